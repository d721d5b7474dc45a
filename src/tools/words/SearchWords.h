#pragma once

#include "platform/FileSystem.h"
#include "platform/Progress.h"
#include "tools/build/BuildInput.h"
#include "tools/build/Finding.h"
#include "tools/build/FreshFolder.h"
#include "tools/build/ScannedPages.h"
#include "tools/words/PageCounter.h"
#include "tools/words/WordCache.h"

#include <optional>
#include <vector>

struct PageNumbers;
struct ShardSources;
struct WordPage;

/// The search words of a project: counts them while its pages are read, and then writes what search
/// needs to "Search_Words\". What it counted is kept in "QV_SearchWords.bin" of the project folder,
/// so that pages which did not change need not be read again.
class SearchWords final : public PageTextTaker
{
public:
    /// `threads` is how many read pages at most; `everything`: what was kept is not used.
    SearchWords(FileSystem &files, const BuildInput &input, int threads, bool everything = false);

    void take(int thread, quint32 page, const ReadablePage &text) override;
    [[nodiscard]] bool knows(std::string_view path, quint64 sum) const override;

    /// Writes the new folder beside the old one, once all pages have been read with this as taker.
    /// Raises QvError when a file cannot be written and `Unwinding{Stopped}`. Can be called once.
    void prepare(const ScannedPages &pages, const Progress &progress = {});
    /// Puts what was prepared in place. The report tells of pages that could not be read, that hold
    /// no word, and of keywords that lead nowhere. Raises QvError; the old folder is whole then.
    [[nodiscard]] ToolReport putInPlace();

private:
    struct Written
    {
        std::vector<std::string> kept; ///< of each shard, for the next build
        quint32 words = 0;
    };
    [[nodiscard]] PageNumbers numbers() const;
    void giveWords(std::vector<WordPage> &pages, const ScannedPages &scanned,
                   std::vector<bool> &isKept) const;
    [[nodiscard]] WordTable joinWords();
    [[nodiscard]] quint32 counted() const;
    [[nodiscard]] Written writeShards(const ShardSources &sources, const Progress &progress);
    void removeOldLog() const;
    [[nodiscard]] QByteArray keptBytes(const std::vector<WordPage> &pages, quint32 next,
                                       const std::vector<std::string> &shards) const;

    FileSystem &m_files;
    const BuildInput &m_input;
    const int m_threads;
    std::vector<PageCounter> m_counters; ///< by thread
    WordCache m_kept;
    std::optional<FreshFolder> m_folder;
    QByteArray m_toKeep; ///< what the next build needs, written when the folder is in place
    ToolReport m_report;
};
