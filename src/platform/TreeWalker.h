#pragma once

#include "platform/FileSystem.h"
#include "platform/Progress.h"

#include <functional>

// The only code that goes through folders. It never follows links or junctions, goes at most 64
// levels deep (75 beyond) and never leaves the folder it was given.

/// One thing met on the way.
struct TreeEntry
{
    QString path;     ///< full, without a backslash at the end
    QString relative; ///< below the start folder
    FileStatus status;
};

/// Calls `visit` for everything below `folder`: each folder before what lies in it, names in order.
void walkTree(FileSystem &files, const QString &folder,
              const std::function<void(const TreeEntry &)> &visit);

/// Copies all of `from` into `to`, which may be there but must be empty or hold other names.
/// Files keep their read-only bit, folders do not: a copy is made to be changed.
/// Links are left out and returned (relative). Refuses a target inside the source (75).
/// What `leaveOut` says true to is left out too, a folder with all in it; it is not returned.
QStringList copyTree(FileSystem &files, const QString &from, const QString &to,
                     const Progress &progress = {},
                     const std::function<bool(const TreeEntry &)> &leaveOut = {});

/// Deletes a folder with all in it, read-only files included: renames it aside first
/// ("<name>.qvdel<n>"), so that a failure to begin changes nothing, then deletes what it renamed;
/// where nothing in it can be deleted, it gets its name back.
/// The progress counts files. Stop before the renaming throws Unwinding; after it the folder counts
/// as deleted, and the result says where `removeLeftovers` will find the rest. "" when all is gone.
QString deleteTree(FileSystem &files, const QString &folder, const Progress &progress = {});

/// Removes what an interrupted `deleteTree` left directly below `parent`, but for the names `kept`
/// and for what was set aside of a kept name whose own folder is gone: it may be all there is.
void removeLeftovers(FileSystem &files, const QString &parent, const QStringList &kept = {});

/// Removes what killed programs left directly below `parent`, but for the names `kept`: temporary
/// files ("<name>.qvtmp<number>") and unfinished copies ("<name>.qvnew") last changed more than a
/// day before `parent` itself was, so that the clocks of two machines are never compared.
void removeAbandoned(FileSystem &files, const QString &parent, const QStringList &kept);
