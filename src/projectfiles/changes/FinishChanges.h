#pragma once

#include "platform/FileSystem.h"

/// Finishes the changes that dying programs began in a project: files that still hold the old
/// content get the new one; a file that somebody else changed meanwhile is left alone and named,
/// and the plan is then kept aside in _Backup\ as "Change-<n>.kept". Damaged plans are put aside
/// too, and nothing of them is done. Says what was done, in words; nothing when there was nothing
/// to do. Waits up to 10 s for another program that is at it, and then leaves it to that.
/// `projectFolder` ends in a backslash.
QStringList finishChanges(FileSystem &files, const QString &projectFolder);

/// The same for a caller that holds the lock on changes.
QStringList finishInForce(FileSystem &files, const QString &projectFolder);
