#pragma once

#include "tools/words/PageWords.h"

#include <QByteArray>
#include <QString>

#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

class PackedWriter;

/// A page of which the words are kept.
struct KeptPage
{
    std::string path;    ///< as the listing has it
    quint64 sum = 0;     ///< checksum of the page's bytes
    quint32 number = 0;  ///< in "Search_Pages.xml"
    quint32 length = 0;  ///< all words that stand in it, each as often as it does
    quint32 entries = 0; ///< how many words, each once
};

/// A word and its pages as they are kept.
struct KeptWord
{
    std::string_view text = {}, stem = {};
    bool isFirst = true;          ///< of the stems of its word
    std::string_view packed = {}; ///< its postings
};

/// What "QV_SearchWords.bin" holds: all words with their pages, by the file of words they are in,
/// so that a build counts the words of changed pages only.
class WordCache final
{
public:
    /// None at all when the bytes are damaged, of another version of the program, or of a project
    /// of another language, which decides how some pages are read.
    static WordCache read(QByteArray bytes, const QString &language);
    /// The bytes of such a file; `next` is the next page's number.
    static QByteArray bytes(const QString &language, quint32 next, std::span<const KeptPage> pages,
                            std::span<const std::string> shards);

    WordCache() = default;
    WordCache(const WordCache &) = delete;
    WordCache &operator=(const WordCache &) = delete;
    WordCache(WordCache &&) = default; // what the views look at moves along
    WordCache &operator=(WordCache &&) = default;

    [[nodiscard]] const std::vector<KeptPage> &pages() const { return m_pages; }
    [[nodiscard]] quint32 next() const { return m_next; }
    /// The page at a path when its bytes are still those; else null.
    [[nodiscard]] const KeptPage *find(std::string_view path, quint64 sum) const;

    [[nodiscard]] quint32 shards() const { return static_cast<quint32>(m_shards.size()); }
    /// The words of one file in their order. Raises 75 when they cannot be.
    [[nodiscard]] std::vector<KeptWord> wordsOf(quint32 shard) const;

private:
    [[nodiscard]] bool take(std::string_view bytes, std::string_view language);

    QByteArray m_bytes;
    std::vector<KeptPage> m_pages;
    std::vector<std::string_view> m_shards;
    std::unordered_map<std::string_view, size_t> m_byPath;
    quint32 m_next = 1;
};

/// Adds a word to the words of one file.
void keepWord(PackedWriter &shard, const KeptWord &word);
/// The postings of a word, in the order of pages, as they are kept.
std::string packedPostings(Postings postings);
/// Adds those postings to `target` whose pages `isGood` has; false when some were left out.
bool unpackPostings(std::string_view packed, const std::vector<bool> &isGood,
                    std::vector<Posting> &target);
