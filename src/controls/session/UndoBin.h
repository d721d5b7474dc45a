#pragma once

#include "platform/FileSystem.h"

/// Where commands put what they take out of a project, so that undoing finds it again:
/// "_Backup\Undo-<n>\", which belongs to one session. Its lock, "Undo-<n>.lock", tells the others
/// that the session lives. Project folders are given with a backslash at the end, and each time
/// anew, because a project may be renamed.
class UndoBin final
{
public:
    explicit UndoBin(FileSystem &files);

    /// A free place for something called `name`; its parent is made.
    QString place(const QString &projectFolder, const QString &name);
    /// Nobody can bring back any more what lies there. What cannot be deleted now is at a later
    /// open of the project.
    void empty(const QString &projectFolder);
    /// Lets go of its lock, so that the project's folder can be moved; and takes it again.
    void letGo() { m_lock.reset(); }
    void takeHold(const QString &projectFolder);

private:
    void take(const QString &backups, const QString &like);

    FileSystem &m_files;
    QString m_name; ///< "" until it is needed
    int m_count = 0;
    std::unique_ptr<FileLock> m_lock;
};

/// Empties the bins whose sessions are dead, and removes what else killed programs left in
/// _Backup\. Nothing is touched while an interrupted change needs it.
void removeDeadBins(FileSystem &files, const QString &projectFolder);
