#pragma once

#include "platform/FileSystem.h"

#include <QString>

#include <memory>

/// Tells other programs that a project is open: an operating-system lock on
/// "_Backup\Open-<n>.lock", which goes with the program. Where it cannot be made the project is
/// open all the same.
class OpenMark final
{
public:
    /// `projectFolder` ends in a backslash.
    OpenMark(FileSystem &files, const QString &projectFolder);
    OpenMark(const OpenMark &) = delete;
    OpenMark &operator=(const OpenMark &) = delete;
    ~OpenMark();

private:
    FileSystem &m_files;
    QString m_path;
    std::unique_ptr<FileLock> m_lock;
};

/// How many who are alive have the project open, this program included; what dead ones left goes.
int countOpen(FileSystem &files, const QString &projectFolder);
/// Whether anybody who is alive has the project open, be it this program. What dead ones left goes.
bool isOpenAnywhere(FileSystem &files, const QString &projectFolder);
