#pragma once

#include "platform/FileSystem.h"
#include "platform/Progress.h"
#include "startup/Session.h"

/// Changes over all content files of a project. They run on copies of ours before those are listed,
/// so single files are not synced; callers sync the tree.
class ContentFiles
{
public:
    ContentFiles(Session &session, FileSystem &files);

    /// Rewrites the marker "**<oldName>**" to that of the current project in every page below
    /// `folder` (pages become UTF-16) and, when `deleteServerZip` is 1, deletes the packed copy of
    /// `oldName` directly in it. A page is a file whose path below `folder` holds ".htm"; bytes
    /// that are no text are left alone. A page that cannot be read is kept beside itself as
    /// "<name>.page-unreadable" before it becomes empty; returns the full paths of such pages.
    QStringList QVUpdateFiles(const QString &folder, const QString &oldName, qint16 deleteServerZip,
                              const Progress &progress = {});

    /// Flips the read-only bit of every file below the sub-folders of `folderPath` whose path does
    /// not hold "Book_"; a second run gives the files back their earlier state. The description of
    /// what it raises is "Error (<number> ):", the procedure and the reason, in three lines.
    void SecureContentFiles(const QString &folderPath);
    /// The same for the files of `folder` itself, their read-only bit flipped when `flag` is 1, and
    /// for all below.
    void SetAttribute(const QString &folder, qint16 flag);

private:
    Session &m_session;
    FileSystem &m_files;
};
