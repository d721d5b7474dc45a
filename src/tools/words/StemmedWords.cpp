#include "tools/words/StemmedWords.h"

#include "tools/OrderedWork.h"
#include "tools/words/SearchPages.h"
#include "tools/words/WordForms.h"

#include <algorithm>

namespace {

constexpr quint32 blockSize = 8192;

} // namespace

/// Some words with their stems.
struct StemmedWords::Block
{
    struct Stem
    {
        quint32 word = 0, start = 0, length = 0;
        bool isFirst = true;
    };
    std::string stems = {};
    std::vector<Stem> words = {};

    void add(quint32 word, std::string_view stem, bool isFirst)
    {
        words.push_back(
            {word, static_cast<quint32>(stems.size()), static_cast<quint32>(stem.size()), isFirst});
        stems += stem;
    }
};

StemmedWords::StemmedWords(const WordTable &table, const PostingLists &lists,
                           const QString &language, quint32 shards, int threads,
                           const Progress &progress)
    : m_table(table)
    , m_lists(lists)
    , m_stems((table.size() + blockSize - 1) / blockSize)
    , m_shards(shards)
{
    std::vector<Block> blocks(m_stems.size());
    const auto stem = [&](int number) {
        const auto first = static_cast<quint32>(number) * blockSize;
        blocks[static_cast<size_t>(number)] =
            stemmed(first, std::min(first + blockSize, table.size()), language);
    };
    const auto share = [&](int number) {
        progress.step(number, static_cast<int>(blocks.size()));
        Block &block = blocks[static_cast<size_t>(number)];
        std::string &stems = m_stems[static_cast<size_t>(number)] = std::move(block.stems);
        for (const Block::Stem &entry : block.words) {
            const auto text = std::string_view(stems).substr(entry.start, entry.length);
            m_shards[shardOf(text, shards)].push_back(
                {entry.word, m_table.word(entry.word), text, entry.isFirst});
        }
        block = {};
    };
    inOrder(static_cast<int>(blocks.size()), threads, progress.stop, stem, share);
}

StemmedWords::Block StemmedWords::stemmed(quint32 first, quint32 last,
                                          const QString &language) const
{
    const WordForms forms(language);
    Block block;
    for (quint32 word = first; word < last; ++word) {
        const std::string_view text = m_table.word(word);
        if (m_lists.of(word).empty())
            continue;
        if (WordForms::isPlain(text)) {
            block.add(word, forms.stem(text), true);
            continue;
        }
        const std::vector<std::string> stems = forms.stemsOf(text);
        for (const std::string &stem : stems)
            block.add(word, stem, stem == stems.front());
    }
    return block;
}
