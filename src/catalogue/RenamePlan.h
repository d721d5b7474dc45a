#pragma once

#include "platform/FileSystem.h"

#include <QList>
#include <QString>

/// A project that is being given another name. The file "Docs\QV_Rename-<n>.xml" says so from
/// before the first change until after the last, so that what a dying program began is finished.
struct RenamePlan
{
    QString path; ///< of the file
    QString oldName, newName;
    bool alsoOthers = false; ///< the link files of other projects follow
    friend bool operator==(const RenamePlan &, const RenamePlan &) = default;
};

/// Writes the plan under a free name, which two programs never take at once, and returns it with
/// its path. Raises 70 when the catalogue's lock is not to be had.
RenamePlan writeRenamePlan(FileSystem &files, const QString &serverPath, RenamePlan plan);

/// The plans that lie in Docs. What cannot be read is none, and stays.
QList<RenamePlan> renamePlans(FileSystem &files, const QString &serverPath);
