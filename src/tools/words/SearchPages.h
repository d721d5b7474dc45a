#pragma once

#include "platform/FileSystem.h"

#include <QList>
#include <QString>

#include <string_view>

/// A page that search leads to.
struct SearchPage
{
    quint32 number = 0; ///< the same in every run, never used again
    QString book, page; ///< acronym, id in the book; "" when the page is in no outline
    QString target;     ///< relative to the project folder, with backslashes
    QString title;
    quint64 sum = 0;   ///< checksum of the page's bytes
    quint32 words = 0; ///< all that stand in it, each as often as it does
};

/// "Search_Pages.xml": what the numbers in the files of words mean.
struct SearchPages
{
    QString language = {};
    quint32 shards = 1;           ///< how many files of words there are; a power of two
    quint32 next = 1;             ///< the next page's number
    QList<SearchPage> pages = {}; ///< in the order of numbers
};

namespace SearchFile {
inline constexpr QLatin1StringView pages{"Search_Pages.xml"};
inline constexpr QLatin1StringView stopWords{"Stop_Words.xml"};
inline constexpr QLatin1StringView log{"SearchWords_Log.txt"};
QString words(quint32 shard); ///< "Words_017.xml"
bool isWords(const QString &name);
} // namespace SearchFile

/// Raises 53 when it is missing and 75 when it cannot be read.
SearchPages readSearchPages(FileSystem &files, const QString &path);
QByteArray searchPagesFile(const SearchPages &pages);

/// The file that holds the words of a stem: FNV-1a of its UTF-8 bytes, 32 bits, modulo the number
/// of files.
quint32 shardOf(std::string_view stem, quint32 shards);
