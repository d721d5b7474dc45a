#pragma once

#include "platform/FileSystem.h"

#include <QString>

#include <memory>

/// Held while a project is made, renamed or deleted, so that two authors never make one of the same
/// name at the same time. An operating-system lock on "<project folder>.qvnew.lock", which is
/// removed at the end.
class NameClaim final
{
public:
    /// `folder` is the project's, without backslash. Raises 70 when another author's program
    /// holds the name.
    NameClaim(FileSystem &files, const QString &folder);
    NameClaim(const NameClaim &) = delete;
    NameClaim &operator=(const NameClaim &) = delete;
    ~NameClaim();

private:
    FileSystem &m_files;
    QString m_path;
    std::unique_ptr<FileLock> m_lock;
};
