#pragma once

#include <QtGlobal>

#include <span>

/// Where a word stands in a page; a word may stand in several places.
namespace WordPlace {
inline constexpr quint32 title = 1;
inline constexpr quint32 heading = 2;
inline constexpr quint32 pageKeyWord = 4;
inline constexpr quint32 body = 8;
inline constexpr quint32 alternative = 16;
inline constexpr quint32 authorKeyWord = 32; ///< QV_SearchKeyWords.xml leads to the page
} // namespace WordPlace

/// How often a word stands in a page, and where: a number that is small for most words.
struct WordCount
{
    quint32 packed = 0;

    static constexpr quint32 one = 64, most = 0x3FFFFFF;
    [[nodiscard]] quint32 count() const { return packed / one; }
    [[nodiscard]] quint32 places() const { return packed % one; }
    void add(quint32 place)
    {
        packed |= place;
        if (count() < most)
            packed += one;
    }
};

/// A word of a page.
struct PageWord
{
    quint32 word = 0; ///< its number in a WordTable
    WordCount count;
};
using PageWords = std::span<const PageWord>;

/// A page that holds a word.
struct Posting
{
    quint32 page = 0; ///< its number in "Search_Pages.xml"
    WordCount count;
};
using Postings = std::span<const Posting>;
