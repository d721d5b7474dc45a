#pragma once

#include "tools/build/ReadablePage.h"
#include "tools/words/PageWords.h"
#include "tools/words/WordSplitter.h"
#include "tools/words/WordTable.h"

#include <vector>

/// Counts the words of pages, one after the other. Each thread has its own.
class PageCounter final
{
public:
    struct Counted
    {
        quint32 page = 0;
        quint32 first = 0, size = 0; ///< in `entries`
        quint32 words = 0;           ///< all that stand in the page, each as often as it does
    };

    void count(quint32 page, const ReadablePage &text);

    [[nodiscard]] const WordTable &table() const { return m_table; }
    [[nodiscard]] const std::vector<Counted> &pages() const { return m_pages; }
    [[nodiscard]] PageWords wordsOf(const Counted &page) const
    {
        return PageWords(m_entries).subspan(page.first, page.size);
    }

    /// Gives all words the numbers of another table, by their own; nothing can be counted after
    /// that.
    void renumber(const std::vector<quint32> &numbers);

private:
    struct Sink;
    void add(std::string_view word);

    WordSplitter m_splitter;
    WordTable m_table;
    std::vector<PageWord> m_entries{1}; ///< the first belongs to no page
    std::vector<quint32> m_placeOf;     ///< by word: its last place in m_entries
    std::vector<Counted> m_pages;
    quint32 m_first = 1; ///< entry of the page being counted
    quint32 m_words = 0;
    quint32 m_place = 0;
};
