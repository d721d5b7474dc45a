#pragma once

#include "controls/session/ProjectSession.h"

/// Lists locked files (relative to the project folder) and offers to unlock them. True when there
/// are none; false when the author does not want to.
bool mayUnlock(const ProjectSession &session, const QStringList &locked);

/// Those of the files that a change writes which are locked now, relative to the project folder.
QStringList lockedBy(const ProjectSession &session, const FileChanges &changes);

/// Takes the read-only bit from files of a project. They get it back unless `keep` was called.
class UnlockedFiles final
{
public:
    explicit UnlockedFiles(const ProjectSession &session);
    UnlockedFiles(const UnlockedFiles &) = delete;
    UnlockedFiles &operator=(const UnlockedFiles &) = delete;
    ~UnlockedFiles();

    /// `files` are relative to the project folder. Raises 70 naming one that cannot be unlocked.
    void unlock(const QStringList &files);
    void keep() { m_paths.clear(); }

private:
    FileSystem &m_files;
    QString m_folder;
    QStringList m_paths;
};
