#pragma once

#include "controls/session/ProjectSession.h"

#include <QHash>

class BackgroundWork;
class ChangeWatch;

/// How many new findings the last quality checks of the session's project have for each page. The
/// report is read in the background, and again when a build or the author's decisions change it.
class TreeFindings final : public QObject
{
    Q_OBJECT

public:
    explicit TreeFindings(ProjectSession &session, QObject *parent = nullptr);
    ~TreeFindings() override;

    /// Of the page at a path relative to the project folder.
    [[nodiscard]] int of(const QString &path) const { return m_counts.value(path.toCaseFolded()); }

Q_SIGNALS:
    void changed();

private:
    void follow();
    void read();
    void take(const QHash<QString, int> &counts);

    ProjectSession &m_session;
    ChangeWatch *m_watch;
    BackgroundWork *m_reading;
    QHash<QString, int> m_counts; ///< by folded path
};
