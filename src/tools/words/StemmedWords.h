#pragma once

#include "platform/Progress.h"
#include "tools/words/PostingLists.h"
#include "tools/words/WordTable.h"

#include <QString>

#include <string>
#include <string_view>
#include <vector>

/// The words of a table with their stems, shared out over the files of words: all of a stem go into
/// one.
class StemmedWords final
{
public:
    struct Entry
    {
        quint32 word = 0;
        std::string_view text = {}, stem = {};
        bool isFirst = true; ///< of the stems of its word
    };

    /// Words without a page are left out. `shards` is a power of two. Table and lists must stay.
    StemmedWords(const WordTable &table, const PostingLists &lists, const QString &language,
                 quint32 shards, int threads, const Progress &progress = {});
    StemmedWords(const StemmedWords &) = delete;
    StemmedWords &operator=(const StemmedWords &) = delete;

    [[nodiscard]] const std::vector<Entry> &of(quint32 shard) const { return m_shards[shard]; }
    [[nodiscard]] Postings postings(const Entry &entry) const { return m_lists.of(entry.word); }

private:
    struct Block;
    [[nodiscard]] Block stemmed(quint32 first, quint32 last, const QString &language) const;

    const WordTable &m_table;
    const PostingLists &m_lists;
    std::vector<std::string> m_stems; ///< of blocks of words, one after the other
    std::vector<std::vector<Entry>> m_shards;
};
