#pragma once

#include "platform/FileSystem.h"
#include "platform/Progress.h"
#include "projectfiles/BookFile.h"
#include "projectfiles/GlobalBook.h"
#include "projectfiles/KeyWordFile.h"
#include "projectfiles/QuickNavFile.h"
#include "projectfiles/TableOfContents.h"
#include "tools/build/Finding.h"

#include <QHash>
#include <QList>
#include <QString>

/// One book of the project as its files tell.
struct BuildBook
{
    TocBook entry;
    Book book;            ///< empty when it could not be read
    QString folder;       ///< relative to the project folder, with backslash; "" when it leaves it
    QString problem = {}; ///< why the book's file could not be read
};

/// What a page is called in the project.
struct PageOwner
{
    QString book;  ///< acronym; "GLOBAL" for the global pages
    QString id;    ///< in that book
    QString title; ///< as the outline shows it
};

/// The author's files of a project, read once for all tools of a build.
struct BuildInput
{
    QString project;  ///< name of its folder below Docs
    QString folder;   ///< full path, with backslash
    QString language; ///< as the catalogue has it
    TocHeader header;
    QList<BuildBook> books;
    QList<GlobalPage> globalPages;
    QuickNav quickNav;
    QList<KeyWord> keyWords;
    QList<Finding> problems; ///< author files that could not be read

    /// Where a book's page lies, relative to the project folder; "" when there is no such book or
    /// page. `book` may be "GLOBAL". Letter case of the acronym does not count.
    [[nodiscard]] QString pageFile(const QString &book, const QString &page) const;
    /// Who a page (relative path) belongs to, in the order of books; empty when it is in no
    /// outline.
    [[nodiscard]] QList<PageOwner> ownersOf(const QString &path) const;
    /// Those of `problems` that are about the files of books.
    [[nodiscard]] QList<Finding> bookProblems() const;
    /// The folders whose pages a build reads: of all books, and of the global pages.
    [[nodiscard]] QStringList pageFolders() const;

    /// Made by `readBuildInput`.
    QHash<QString, QString> files = {};           ///< "ACRO\nP0001", folded, to relative path
    QHash<QString, QList<PageOwner>> owners = {}; ///< by folded relative path
};

/// Reads them. A book that cannot be read is a problem of the result, not an error; raises 53 or 75
/// when the table of contents cannot be read.
BuildInput readBuildInput(Session &session, FileSystem &files, const QString &project,
                          const QString &language, const Progress &progress = {});
