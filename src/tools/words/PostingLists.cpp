#include "tools/words/PostingLists.h"

#include <numeric>

PostingLists::PostingLists(quint32 words, std::span<const NumberedPage> pages)
    : m_starts(words + 1)
{
    for (const NumberedPage &page : pages) {
        for (const PageWord &entry : page.words)
            ++m_starts[entry.word + 1];
    }
    std::partial_sum(m_starts.begin(), m_starts.end(), m_starts.begin());
    m_postings.resize(m_starts.back());
    std::vector<quint32> next(m_starts.begin(), m_starts.end() - 1);
    for (const NumberedPage &page : pages) {
        for (const PageWord &entry : page.words)
            m_postings[next[entry.word]++] = {page.number, entry.count};
    }
}
