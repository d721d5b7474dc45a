#pragma once

#include <QObject>
#include <QTimer>

#include <thread>

class FileSystem;

/// Counts the files of a folder on a worker, so that nobody waits for a large project.
class FolderSize final : public QObject
{
    Q_OBJECT

public:
    explicit FolderSize(FileSystem &files, QObject *parent = nullptr);
    ~FolderSize() override;

    /// Begins to count in a moment, when the window stands and the changes that come close together
    /// are done; what was being counted before is given up. "" only gives up.
    void count(const QString &folder);

Q_SIGNALS:
    void counted(int files, qint64 bytes);

private:
    void begin();

    FileSystem &m_files;
    QString m_folder;
    QTimer m_later;
    int m_round = 0; ///< a result that was on its way when the next round began is old
    std::jthread m_worker;
};
