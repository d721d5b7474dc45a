#pragma once

#include "tools/words/PageWords.h"

#include <vector>

struct NumberedPage
{
    quint32 number = 0;
    PageWords words = {};
};

/// Which pages hold a word: the words of pages turned round.
class PostingLists final
{
public:
    /// `words`: how many there are. `pages` in the order of their numbers, which is then that of
    /// each list.
    PostingLists(quint32 words, std::span<const NumberedPage> pages);

    [[nodiscard]] Postings of(quint32 word) const
    {
        return Postings(m_postings).subspan(m_starts[word], m_starts[word + 1] - m_starts[word]);
    }

private:
    std::vector<quint32> m_starts;
    std::vector<Posting> m_postings;
};
