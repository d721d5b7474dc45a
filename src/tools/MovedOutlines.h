#pragma once

#include "projectfiles/BookFile.h"
#include "tools/PageMove.h"

// What the project's own files say about pages follows when pages and book folders move. All work
// on the files as they lie before the move.

/// Page files in the outlines, folders in the table of contents, paths in the link-ID file.
void followInProject(Session &session, FileSystem &files, const QString &project,
                     const QList<PathMove> &moves);

/// Pages that go to another place of an outline, or to another book.
struct OutlineMove
{
    TocBook from, to;
    QStringList ids;     ///< each goes with all below it
    QString parent;      ///< id in `to`; "" is the top
    int row = -1;        ///< before that child; -1 is behind all
    QString folder = {}; ///< where the files go: relative to the folder of `to`, "" or "sub\"
};

/// The pages of `move` that have a file, as moves of those files: names that are taken get a
/// number. Files that stay where they are are left out. Raises 5 when a page is not there.
QList<PathMove> fileMoves(Session &session, FileSystem &files, const QString &project,
                          const OutlineMove &move);

/// Moves them in the outlines; quick navigation and keywords follow. `moves` says where the files
/// go. Returns the ids that the pages have now, by the ones they had. Raises 5 when they would be
/// too deep or the parent is one of them.
QHash<QString, QString> moveInOutlines(Session &session, FileSystem &files, const QString &project,
                                       const OutlineMove &move, const QList<PathMove> &moves);
