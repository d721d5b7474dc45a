#pragma once

#include "platform/FileSystem.h"
#include "tools/build/BuildInput.h"
#include "tools/build/ScannedPages.h"
#include "tools/words/PageWords.h"
#include "tools/words/SearchPages.h"

#include <QHash>
#include <QString>

#include <vector>

/// A page of the project on its way into the search words.
struct WordPage
{
    const ScannedPage *scanned = nullptr;
    SearchPage shown;     ///< as search leads to it
    PageWords words = {}; ///< when they were counted in this run
    quint32 entries = 0;  ///< how many words it holds, each once
};

/// Which numbers pages have, and which comes next.
struct PageNumbers
{
    QHash<QString, quint32> known = {}; ///< by path, with backslashes
    quint32 next = 1;
};
/// As "Search_Pages.xml" of a folder has them; none when it is missing or unreadable.
PageNumbers pageNumbers(FileSystem &files, const QString &folder);

/// All pages that could be read, in the order of their numbers; those without one get the next.
std::vector<WordPage> wordPages(const BuildInput &input, const ScannedPages &scanned,
                                PageNumbers &numbers);
