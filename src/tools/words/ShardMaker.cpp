#include "tools/words/ShardMaker.h"

#include "tools/build/DerivedXml.h"
#include "tools/build/PackedBytes.h"
#include "tools/words/SearchPages.h"

#include <algorithm>
#include <bit>
#include <tuple>

namespace {

constexpr size_t entriesPerShard = 32768, mostShards = 256;
constexpr qsizetype usualUnits = 400'000; // of so many entries
constexpr quint32 tellingPlaces =
    WordPlace::title | WordPlace::heading | WordPlace::pageKeyWord | WordPlace::authorKeyWord;

/// A word with its stem, and what one of the sources, or all of them together, know of it.
struct Item
{
    KeptWord word = {};
    Postings fresh = {}, keyWords = {};

    [[nodiscard]] auto key() const { return std::tie(word.text, word.stem); }
    friend bool operator<(const Item &a, const Item &b) { return a.key() < b.key(); }

    void join(const Item &other)
    {
        if (word.packed.empty())
            word.packed = other.word.packed;
        if (fresh.empty())
            fresh = other.fresh;
        if (keyWords.empty())
            keyWords = other.keyWords;
    }
};

std::vector<Item> keptItems(const WordCache &kept, quint32 shard, quint32 shards)
{
    std::vector<Item> items;
    const quint32 common = std::min(kept.shards(), shards); // both are powers of two
    for (quint32 other = 0; other < kept.shards(); ++other) {
        if (other % common != shard % common)
            continue;
        for (const KeptWord &word : kept.wordsOf(other)) {
            if (kept.shards() == shards || shardOf(word.stem, shards) == shard)
                items.push_back({word});
        }
    }
    if (kept.shards() > shards)
        std::sort(items.begin(), items.end());
    return items;
}

/// Adds what lies in no order yet to what does.
void mergeIn(std::vector<Item> &items, std::vector<Item> more)
{
    std::sort(more.begin(), more.end());
    const auto middle = static_cast<std::ptrdiff_t>(items.size());
    items.insert(items.end(), more.begin(), more.end());
    std::inplace_merge(items.begin(), items.begin() + middle, items.end());
}

std::vector<Item> itemsOf(const StemmedWords &words, quint32 shard, Postings Item::*postings)
{
    std::vector<Item> items;
    items.reserve(words.of(shard).size());
    for (const StemmedWords::Entry &entry : words.of(shard)) {
        Item item{{entry.text, entry.stem, entry.isFirst, {}}};
        item.*postings = words.postings(entry);
        items.push_back(item);
    }
    return items;
}

/// Marks the pages that a keyword leads to; where the word does not stand it counts 0.
void applyKeyWords(std::vector<Posting> &postings, Postings keyWords)
{
    for (const Posting &keyWord : keyWords) {
        const auto byPage = [](const Posting &a, quint32 page) { return a.page < page; };
        auto at = std::lower_bound(postings.begin(), postings.end(), keyWord.page, byPage);
        if (at == postings.end() || at->page != keyWord.page)
            at = postings.insert(at, {keyWord.page, {}});
        at->count.packed |= WordPlace::authorKeyWord;
    }
}

char16_t *writePosting(char16_t *at, const Posting &posting)
{
    constexpr quint32 seen = WordPlace::title | WordPlace::heading | WordPlace::body;
    const quint32 count = posting.count.count(), places = posting.count.places();
    at = writeNumber(at, posting.page);
    if (count == 1 && places == WordPlace::body)
        return at;
    *at++ = u':';
    at = writeNumber(at, count);
    if (places & WordPlace::title)
        *at++ = u't';
    if (places & WordPlace::heading)
        *at++ = u'h';
    if (places & WordPlace::authorKeyWord)
        *at++ = u'k';
    if (places & WordPlace::pageKeyWord)
        *at++ = u'm';
    if ((places & WordPlace::alternative) && !(places & seen))
        *at++ = u'a';
    return at;
}

void writePostings(DerivedXml &xml, Postings postings)
{
    constexpr size_t longest = 1 + 10 + 1 + 8 + 5;
    char16_t *at = xml.room(static_cast<qsizetype>(postings.size() * longest));
    for (const Posting &posting : postings) {
        at = writePosting(at, posting);
        *at++ = u' ';
    }
    xml.filledTo(at - 1); // without the last blank; a word has a page at least
}

void writeWord(DerivedXml &xml, const KeptWord &word, Postings postings)
{
    xml.markup("\t<Word Text=\"");
    xml.word(word.text);
    if (word.stem != word.text) {
        xml.markup("\" Stem=\"");
        xml.word(word.stem);
    }
    xml.markup("\" Pages=\"");
    xml.number(postings.size());
    xml.markup("\">");
    writePostings(xml, postings);
    xml.markup("</Word>\r\n");
}

/// Makes one file, word by word.
class Maker final
{
public:
    Maker(const ShardSources &sources, quint32 shard)
        : m_sources(sources)
        , m_nextStopWord(sources.stopWords.begin())
        , m_xml(usualUnits)
    {
        m_xml.markup("<Search_Words Shard=\"");
        m_xml.number(shard);
        m_xml.markup("\">\r\n");
    }

    void add(Item item)
    {
        m_postings.clear();
        const bool isWhole =
            unpackPostings(item.word.packed, m_sources.isKept, m_postings) && item.fresh.empty();
        mergeFresh(item.fresh);
        if (!m_postings.empty())
            keep(item.word, isWhole);
        applyKeyWords(m_postings, item.keyWords);
        if (isStopWord(item.word.text))
            std::erase_if(m_postings, [](const Posting &posting) {
                return (posting.count.places() & tellingPlaces) == 0;
            });
        if (m_postings.empty())
            return;
        writeWord(m_xml, item.word, m_postings);
        m_shard.words += item.word.isFirst ? 1 : 0;
    }

    MadeShard finish()
    {
        m_xml.markup("</Search_Words>\r\n");
        m_shard.file = m_xml.bytes();
        m_shard.kept = m_kept.bytes();
        return std::move(m_shard);
    }

private:
    void mergeFresh(Postings fresh)
    {
        const auto middle = static_cast<std::ptrdiff_t>(m_postings.size());
        m_postings.insert(m_postings.end(), fresh.begin(), fresh.end());
        std::inplace_merge(m_postings.begin(), m_postings.begin() + middle, m_postings.end(),
                           [](const Posting &a, const Posting &b) { return a.page < b.page; });
    }

    void keep(KeptWord word, bool isWhole)
    {
        const std::string packed = isWhole ? std::string() : packedPostings(m_postings);
        if (!isWhole)
            word.packed = packed;
        keepWord(m_kept, word);
    }

    /// Words come in their order, as the stop words stand.
    bool isStopWord(std::string_view word)
    {
        const auto end = m_sources.stopWords.end();
        while (m_nextStopWord != end && *m_nextStopWord < word)
            ++m_nextStopWord;
        return m_nextStopWord != end && *m_nextStopWord == word;
    }

    const ShardSources &m_sources;
    std::vector<std::string_view>::const_iterator m_nextStopWord;
    DerivedXml m_xml;
    PackedWriter m_kept;
    MadeShard m_shard;
    std::vector<Posting> m_postings; ///< of the word at hand
};

} // namespace

quint32 shardsFor(size_t entries)
{
    return static_cast<quint32>(std::min(mostShards, std::bit_ceil(entries / entriesPerShard + 1)));
}

MadeShard makeShard(const ShardSources &sources, quint32 shard)
{
    std::vector<Item> items = keptItems(sources.kept, shard, sources.shards);
    mergeIn(items, itemsOf(sources.fresh, shard, &Item::fresh));
    mergeIn(items, itemsOf(sources.keyWords, shard, &Item::keyWords));
    Maker maker(sources, shard);
    for (size_t i = 0; i < items.size();) {
        Item item = items[i];
        for (++i; i < items.size() && items[i].key() == item.key(); ++i)
            item.join(items[i]);
        maker.add(item);
    }
    return maker.finish();
}
