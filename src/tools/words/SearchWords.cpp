#include "tools/words/SearchWords.h"

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "resources/Counted.h"
#include "tools/OrderedWork.h"
#include "tools/build/DerivedXml.h"
#include "tools/words/AuthorKeyWords.h"
#include "tools/words/ShardMaker.h"
#include "tools/words/StopWords.h"
#include "tools/words/WordPage.h"

#include <QCoreApplication>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr auto keptName = "QV_SearchWords.bin"_L1;

QString tr(const char *text)
{
    return QCoreApplication::translate("SearchWords", text);
}

QString pagesWorded(size_t count)
{
    return counted(qsizetype(count), tr("1 page"), tr("%1 pages"));
}

WordCache keptWords(FileSystem &files, const BuildInput &input)
{
    const QString path = input.folder + keptName;
    // Whatever is wrong with it, the pages themselves are there to be counted again.
    return trap([](const QvError &) {},
                [&] {
                    return files.exists(path)
                               ? WordCache::read(files.readFile(path), input.language)
                               : WordCache();
                });
}

Finding unreadable(const ScannedPages &scanned, const ScannedPage &page)
{
    const QString text = tr("The page cannot be read, so search does not find it: %1");
    return {u"WORD01"_s, Severity::Error, ProjectListing::shown(scanned.pathOf(page)), 0,
            text.arg(page.problem)};
}

Finding wordless(const WordPage &page)
{
    return {u"WORD02"_s, Severity::Warning, page.shown.target, 0,
            tr("The page holds no word, so search does not find it. Give it a title, or its "
               "pictures alternative texts.")};
}

QList<Finding> findingsOf(const ScannedPages &scanned, const std::vector<WordPage> &pages)
{
    QList<Finding> findings;
    for (const ScannedPage &page : scanned.pages()) {
        if (!page.isStyleSheet && !page.problem.isEmpty())
            findings.append(unreadable(scanned, page));
    }
    for (const WordPage &page : pages) {
        if (page.entries == 0)
            findings.append(wordless(page));
    }
    return findings;
}

ToolReport reportOf(QList<Finding> findings, const QString &summary)
{
    const auto outcome =
        findings.isEmpty() ? ToolReport::Outcome::Good : ToolReport::Outcome::Warnings;
    return {outcome, summary, std::move(findings)};
}

SearchPages listOf(const std::vector<WordPage> &pages, const QString &language, quint32 next)
{
    SearchPages list{.language = language, .next = next};
    size_t entries = 0;
    for (const WordPage &page : pages) {
        list.pages.append(page.shown);
        entries += page.entries;
    }
    list.shards = shardsFor(entries);
    return list;
}

std::vector<NumberedPage> freshPages(const std::vector<WordPage> &pages)
{
    std::vector<NumberedPage> fresh;
    for (const WordPage &page : pages)
        fresh.push_back({page.shown.number, page.words});
    return fresh;
}

QByteArray stopWordsFile(const QString &language)
{
    DerivedXml xml;
    xml.markup("<Stop_Words Language=\"");
    xml.text(language);
    xml.markup("\">\r\n");
    for (const std::string_view word : StopWords::sorted(language)) {
        xml.markup("\t<Stop_Word>");
        xml.word(word);
        xml.markup("</Stop_Word>\r\n");
    }
    xml.markup("</Stop_Words>\r\n");
    return xml.bytes();
}

} // namespace

SearchWords::SearchWords(FileSystem &files, const BuildInput &input, int threads, bool everything)
    : m_files(files)
    , m_input(input)
    , m_threads(std::max(1, threads))
    , m_counters(static_cast<size_t>(m_threads))
    , m_kept(everything ? WordCache() : keptWords(files, input))
{
}

void SearchWords::take(int thread, quint32 page, const ReadablePage &text)
{
    m_counters[static_cast<size_t>(thread)].count(page, text);
}

bool SearchWords::knows(std::string_view path, quint64 sum) const
{
    return m_kept.find(path, sum) != nullptr;
}

void SearchWords::prepare(const ScannedPages &scanned, const Progress &progress)
{
    const WordTable words = joinWords();
    PageNumbers numbers = this->numbers();
    std::vector<WordPage> pages = wordPages(m_input, scanned, numbers);
    std::vector<bool> isKept(numbers.next);
    giveWords(pages, scanned, isKept);
    AuthorKeyWords keyWords(m_input, scanned);
    keyWords.apply(pages);
    progress.step(1, 10);

    const SearchPages list = listOf(pages, m_input.language, numbers.next);
    const PostingLists lists(words.size(), freshPages(pages));
    const PostingLists keyWordLists = keyWords.lists();
    const StemmedWords fresh(words, lists, m_input.language, list.shards, m_threads, progress);
    const StemmedWords byKeyWord(keyWords.words(), keyWordLists, m_input.language, list.shards, 1);
    const std::vector<std::string_view> stopWords = StopWords::sorted(m_input.language);
    const ShardSources sources{m_kept, isKept, fresh, byKeyWord, stopWords, list.shards};

    m_folder.emplace(m_files, m_input, ProjectFile::searchWordsFolder);
    const Written written = writeShards(sources, progress);
    m_report = reportOf(findingsOf(scanned, pages) + keyWords.findings(),
                        tr("%1, %2; %3 read anew.")
                            .arg(pagesWorded(pages.size()),
                                 ::counted(qsizetype(written.words), tr("1 word"), tr("%1 words")),
                                 pagesWorded(counted())));
    m_folder->write(SearchFile::pages, searchPagesFile(list));
    m_folder->write(SearchFile::stopWords, stopWordsFile(m_input.language));
    m_folder->write(SearchFile::log, logFile(tr("Search words"), m_report));
    m_folder->keepOthers(SearchFile::isWords); // there were more, perhaps
    m_folder->flush();
    m_toKeep = keptBytes(pages, numbers.next, written.kept);
    progress.step(10, 10);
}

ToolReport SearchWords::putInPlace()
{
    m_folder->putInPlace();
    removeOldLog();
    // The index is in place; what cannot be kept is counted again by the next build.
    trap([](const QvError &) {},
         [this] {
             m_files.replaceFile(m_input.folder + keptName, m_toKeep,
                                 {.sync = false, .throughReadOnly = true});
         });
    return std::move(m_report);
}

PageNumbers SearchWords::numbers() const
{
    if (m_kept.pages().empty())
        return pageNumbers(m_files, m_input.folder + ProjectFile::searchWordsFolder);
    PageNumbers numbers{{}, m_kept.next()};
    for (const KeptPage &page : m_kept.pages())
        numbers.known.insert(ProjectListing::shown(page.path), page.number);
    return numbers;
}

/// Pages have words that were counted in this run or ones that are kept; `isKept` is told of these.
void SearchWords::giveWords(std::vector<WordPage> &pages, const ScannedPages &scanned,
                            std::vector<bool> &isKept) const
{
    std::vector<WordPage *> byPlace(scanned.pages().size());
    for (WordPage &page : pages) {
        byPlace[static_cast<size_t>(page.scanned - scanned.pages().data())] = &page;
        const KeptPage *kept = m_kept.find(scanned.pathOf(*page.scanned), page.shown.sum);
        if (!kept && !page.scanned->isFresh)
            throw QvError(InvalidCall, {},
                          tr("The words of %1 were not counted.").arg(page.shown.target));
        if (!kept)
            continue;
        page.shown.words = kept->length;
        page.entries = kept->entries;
        isKept[page.shown.number] = kept->number == page.shown.number;
    }
    for (const PageCounter &counter : m_counters) {
        for (const PageCounter::Counted &counted : counter.pages()) {
            WordPage *const page = byPlace[counted.page];
            if (!page)
                continue; // turned out unreadable later on
            page->words = counter.wordsOf(counted);
            page->entries = static_cast<quint32>(page->words.size());
            page->shown.words = counted.words;
            isKept[page->shown.number] = false;
        }
    }
}

/// Gives the words of all threads the numbers of one table.
WordTable SearchWords::joinWords()
{
    WordTable words;
    for (PageCounter &counter : m_counters) {
        const WordTable &table = counter.table();
        words.reserve(std::max(words.size(), table.size()));
        std::vector<quint32> numbers(table.size());
        for (quint32 word = 0; word < table.size(); ++word)
            numbers[word] = words.numberOf(table.word(word));
        counter.renumber(numbers);
    }
    return words;
}

quint32 SearchWords::counted() const
{
    size_t pages = 0;
    for (const PageCounter &counter : m_counters)
        pages += counter.pages().size();
    return static_cast<quint32>(pages);
}

SearchWords::Written SearchWords::writeShards(const ShardSources &sources, const Progress &progress)
{
    const auto count = static_cast<int>(sources.shards);
    std::vector<MadeShard> made(sources.shards);
    Written written{.kept = std::vector<std::string>(sources.shards)};
    const auto make = [&](int shard) {
        made[static_cast<size_t>(shard)] = makeShard(sources, static_cast<quint32>(shard));
    };
    const auto write = [&](int shard) {
        progress.step(count + shard * 8, count * 10);
        MadeShard &one = made[static_cast<size_t>(shard)];
        m_folder->write(SearchFile::words(static_cast<quint32>(shard)),
                        std::exchange(one.file, {}));
        written.words += one.words;
        written.kept[static_cast<size_t>(shard)] = std::move(one.kept);
    };
    inOrder(count, m_threads, progress.stop, make, write);
    return written;
}

/// Earlier versions wrote the log beside the folder, where it would be shown first.
void SearchWords::removeOldLog() const
{
    if (const QString log = m_input.folder + SearchFile::log; m_files.fileExists(log))
        m_files.removeFile(log, true);
}

QByteArray SearchWords::keptBytes(const std::vector<WordPage> &pages, quint32 next,
                                  const std::vector<std::string> &shards) const
{
    std::vector<KeptPage> kept;
    kept.reserve(pages.size());
    for (const WordPage &page : pages)
        kept.push_back({ProjectListing::listed(page.shown.target), page.shown.sum,
                        page.shown.number, page.shown.words, page.entries});
    return WordCache::bytes(m_input.language, next, kept, shards);
}
