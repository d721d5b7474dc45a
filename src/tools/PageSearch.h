#pragma once

#include "platform/FileSystem.h"
#include "platform/Progress.h"
#include "tools/TextFinder.h"

#include <QStringList>

/// What to find in pages, and what shall take its place if anything.
struct PageQuery
{
    FindOptions find;
    std::optional<QString> replacement;
};

/// One hit in a page.
struct PageHit
{
    TextHit place; ///< in the page's text, with its line ends
    int line = 1;
    QString text;        ///< the line, or what of it stands around the hit
    qsizetype begin = 0; ///< of the hit within `text`
    qsizetype length = 0;
    QString after; ///< what takes its place
};

/// The hits of one page, or why it could not be searched.
struct FoundPage
{
    QString path; ///< relative to the project folder
    QList<PageHit> hits;
    bool complete = true; ///< false: the pattern took too long for this page
    QString problem;      ///< why it cannot be read; "" when it can
    bool locked = false;
    QString refusal; ///< why nothing can be replaced in it; "" when it can
    size_t sum = 0;  ///< of the bytes that were searched
};

/// Pages of a project as they are to be searched.
struct SearchedPages
{
    QString projectFolder; ///< with backslash
    QString language;      ///< of the project
    QStringList paths;     ///< relative to the folder
};

/// All pages below the given folders (relative to the project folder), in the order of their names;
/// links are not followed.
QStringList pagesBelow(FileSystem &files, const QString &projectFolder, const QStringList &folders);

/// Looks through the pages on all cores and hands over those in which something was found or that
/// cannot be read, in the order given, on this thread. Raises Unwinding when stopped.
void searchPages(FileSystem &files, const SearchedPages &pages, const PageQuery &query,
                 const Progress &progress, const std::function<void(const FoundPage &)> &found);

/// The page's bytes with these hits replaced, in the encoding that it has. Raises 75 when the page
/// is no longer what was searched, and 5 naming the first character that its encoding lacks.
QByteArray replacedPage(FileSystem &files, const SearchedPages &pages, const FoundPage &page,
                        const PageQuery &query, const std::function<bool(qsizetype)> &isWanted);
