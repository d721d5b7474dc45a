#pragma once

#include "controls/session/ProjectSession.h"
#include "platform/Progress.h"

#include <QCoreApplication>

/// The changes an author makes to the books of the open project. Each is one command that can be
/// undone, and raises as `ProjectSession::perform`; false when there was nothing to do.
class BookCommands
{
    Q_DECLARE_TR_FUNCTIONS(BookCommands)

public:
    explicit BookCommands(ProjectSession &session);

    /// Makes the book's folder and file and lists the book. A book file that is there already, of a
    /// book that was taken out of the list, is taken up again with its pages.
    bool create(const TocBook &entry);
    /// Makes the file of a listed book that has none, with an empty outline.
    bool createMissingFile(const TocBook &entry);
    /// Changes name, acronym, type or categories, in the list and in the book's own file; quick
    /// navigation and keywords follow the acronym.
    bool change(const TocBook &old, const TocBook &now);
    /// To the `to`-th place of the list.
    bool move(const TocBook &entry, int to);
    /// Takes the book out of the list, and with `alsoFiles` deletes its folder and forgets its
    /// keywords. Raises 75 when the folder is not the book's alone or leads elsewhere.
    bool remove(const TocBook &entry, bool alsoFiles);
    /// Why the book's folder cannot be deleted with it; "" when it can.
    QString folderKeptBecause(const TocBook &entry);

    /// Pages in the book's folder that its outline does not list, relative to the folder.
    QStringList unlistedPages(const TocBook &entry);
    /// The titles of pages: their own title, else the first heading, else the file's name. Reads
    /// every page and nothing else, so that a worker may do it.
    QStringList titlesOf(const TocBook &entry, const QStringList &files, const Progress &progress);

private:
    void renameInFile(StagedFiles &files, const TocBook &old, const TocBook &now);
    void redirect(StagedFiles &files, const TocBook &old, const TocBook &now);
    [[nodiscard]] Book emptyBook(const TocBook &entry) const;
    [[nodiscard]] QString titleOf(const QString &path) const;

    ProjectSession &m_session;
    Session &m_values;
    FileSystem &m_files;
};
