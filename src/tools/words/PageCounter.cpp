#include "tools/words/PageCounter.h"

namespace {

quint32 placeOf(ReadablePage::Place place)
{
    switch (place) {
    case ReadablePage::Place::Title:
        return WordPlace::title;
    case ReadablePage::Place::Heading1:
    case ReadablePage::Place::Heading2:
    case ReadablePage::Place::Heading3:
        return WordPlace::heading;
    case ReadablePage::Place::KeyWords:
        return WordPlace::pageKeyWord;
    case ReadablePage::Place::Alternative:
        return WordPlace::alternative;
    case ReadablePage::Place::Body:
        break;
    }
    return WordPlace::body;
}

} // namespace

/// Counts all kinds of words alike; what is only a piece or a pair adds nothing to the length.
struct PageCounter::Sink
{
    PageCounter &counter;
    void part(std::string_view word)
    {
        ++counter.m_words;
        counter.add(word);
    }
    void whole(std::string_view word) { counter.add(word); }
    void single(std::string_view word) { part(word); }
    void pair(std::string_view word) { counter.add(word); }
};

void PageCounter::count(quint32 page, const ReadablePage &text)
{
    m_first = static_cast<quint32>(m_entries.size());
    m_words = 0;
    Sink sink{*this};
    for (const ReadablePage::Run &run : text.runs) {
        m_place = placeOf(run.place);
        m_splitter.split(std::string_view(text.text).substr(run.start, run.length), sink);
    }
    m_pages.push_back({page, m_first, static_cast<quint32>(m_entries.size()) - m_first, m_words});
}

void PageCounter::add(std::string_view word)
{
    const quint32 number = m_table.numberOf(word);
    if (number == m_placeOf.size())
        m_placeOf.push_back(0);
    if (m_placeOf[number] < m_first) {
        m_placeOf[number] = static_cast<quint32>(m_entries.size());
        m_entries.push_back({number, {}});
    }
    m_entries[m_placeOf[number]].count.add(m_place);
}

void PageCounter::renumber(const std::vector<quint32> &numbers)
{
    for (PageWord &entry : m_entries)
        entry.word = numbers.empty() ? 0 : numbers[entry.word];
}
