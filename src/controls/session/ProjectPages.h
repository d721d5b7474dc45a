#pragma once

#include "tools/PageIndex.h"

#include <QObject>
#include <QTimer>

#include <thread>

class ProjectSession;

/// What the pages of the open project say and how they link to each other. It is read in the
/// background when a project is opened and after changes, so that nobody waits for it but those who
/// must be exact.
class ProjectPages final : public QObject
{
    Q_OBJECT

public:
    explicit ProjectPages(ProjectSession &session);
    ~ProjectPages() override;

    /// What was read last; empty until the first reading is done. May lag behind the disk.
    [[nodiscard]] const PageIndex &latest() const { return m_index; }
    [[nodiscard]] bool isReady() const { return m_isReady; }
    /// The same brought up to date now, under a progress dialog when that takes long. Raises as
    /// `ProjectSession::runLong`.
    const PageIndex &current();

Q_SIGNALS:
    void updated();

private:
    struct Job
    {
        QString folder;
        QStringList folders;
        QString language;
    };

    void forget();
    void outdate(const QStringList &paths);
    void readLater();
    void readNow();
    void stopReading();
    void publish();
    [[nodiscard]] Job job() const;

    ProjectSession &m_session;
    PageIndex m_index;
    bool m_isReady = false;
    PageIndex m_next;       ///< what is being read; the reader's own while it runs
    QStringList m_outdated; ///< to be read again whatever their stamps say
    QTimer m_later;         ///< collects changes that come close together
    std::jthread m_reader;
    int m_readings = 0;     ///< tells the reader at work from those before
    bool m_isAsked = false; ///< somebody waits in `current`
};
