#pragma once

#include "controls/session/ProjectSession.h"
#include "platform/Progress.h"

/// The changes an author makes to the books of the open project. Each writes its files at once,
/// keeping the previous versions in _Backup\, and then tells the session. All raise QvError naming
/// the file, and have then changed nothing unless said otherwise.
class BookCommands
{
public:
    explicit BookCommands(ProjectSession &session);

    /// Makes the book's folder and file and lists the book. A book file that is there already, of a
    /// book that was taken out of the list, is taken up again with its pages.
    void create(const TocBook &entry);
    /// Makes the file of a listed book that has none, with an empty outline.
    void createMissingFile(const TocBook &entry);
    /// Changes name, acronym or categories, in the list and in the book's own file.
    void change(const TocBook &old, const TocBook &now);
    /// Takes the book out of the list, and with `alsoFiles` deletes its folder. Raises 75 and
    /// changes nothing when the folder is not the book's alone or leads elsewhere.
    void remove(const TocBook &entry, bool alsoFiles);
    /// Why the book's folder cannot be deleted with it; "" when it can.
    QString folderKeptBecause(const TocBook &entry);

    /// Pages in the book's folder that its outline does not list, relative to the folder.
    QStringList unlistedPages(const TocBook &entry);
    /// The titles of pages: their own title, else the first heading, else the file's name. Reads
    /// every page and nothing else, so that a worker may do it.
    QStringList titlesOf(const TocBook &entry, const QStringList &files, const Progress &progress);
    /// Appends pages to the outline.
    void listPages(const TocBook &entry, const QStringList &files, const QStringList &titles);
    /// Writes the book's file. Raises 75 when another author changed it since it was read here.
    void write(const TocBook &entry, const Book &book);

private:
    [[nodiscard]] bool mayBeListed(const TocBook &entry);
    [[nodiscard]] Book emptyBook(const TocBook &entry) const;
    [[nodiscard]] QString titleOf(const QString &path) const;

    ProjectSession &m_session;
    Session &m_values;
    FileSystem &m_files;
};
