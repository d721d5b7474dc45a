#include "tools/build/ScannedPages.h"

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "tools/Checksum.h"
#include "tools/PageIndexReader.h"
#include "tools/build/PageFactsCache.h"
#include "tools/build/PageScan.h"

#include <QDateTime>

#include <algorithm>
#include <atomic>
#include <exception>
#include <thread>
#include <unordered_set>

using namespace Qt::StringLiterals;

namespace {

constexpr auto cacheName = "QV_PageFacts.bin"_L1;
/// Some file systems tell times no finer: what changed so shortly before it was read may have
/// changed again since, under the same time.
constexpr qint64 coarseTime = 2000;

std::string_view view(const QByteArray &bytes)
{
    return {bytes.constData(), static_cast<size_t>(bytes.size())};
}

std::string folded(std::string_view path)
{
    return ProjectListing::listed(ProjectListing::shown(path).toCaseFolded());
}

/// The folders whose pages are read.
class PageFolders final
{
public:
    explicit PageFolders(const BuildInput &input)
    {
        const QStringList folders = input.pageFolders();
        for (const QString &folder : folders)
            m_folders.insert(folded(ProjectListing::listed(folder)));
    }

    [[nodiscard]] bool hold(std::string_view path) const
    {
        const std::string key = folded(path);
        for (size_t at = key.find('/'); at != std::string::npos; at = key.find('/', at + 1)) {
            if (m_folders.contains(key.substr(0, at)))
                return true;
        }
        return false;
    }

private:
    std::unordered_set<std::string> m_folders;
};

KnownPages readCache(FileSystem &files, const BuildInput &input)
{
    const QByteArray bytes = files.readFile(input.folder + cacheName);
    std::optional<KnownPages> known = readKnownPages(view(bytes));
    const bool isOurs = known && known->project == input.project.toStdString()
                        && known->language == input.language.toStdString();
    return isOurs ? std::move(*known) : KnownPages();
}

} // namespace

/// One reading of a project's pages.
class ScannedPages::Run final
{
public:
    Run(FileSystem &files, const BuildInput &input, const ScanWishes &wishes,
        const Progress &progress, ScannedPages &result)
        : m_files(files)
        , m_input(input)
        , m_wishes(wishes)
        , m_progress(progress)
        , m_result(result)
    {
    }

    void read()
    {
        m_now = QDateTime::currentMSecsSinceEpoch(); // before anything is looked at
        {
            const std::jthread other([this] { readKnown(); });
            m_result.m_listing =
                ProjectListing::read(m_files, m_input.folder, {{}, m_progress.stop});
        }
        for (const std::string &target : m_known.targets)
            (void)m_targets.number(target); // what is known keeps its numbers
        listPages();
        readStale();
        m_result.numberTargets(m_targets.take());
    }

private:
    struct Stale
    {
        size_t page;
        KnownPage *known; ///< what was found when it was last read; null when it never was
    };

    /// Without a cache everything is read, whatever the reason is.
    void readKnown()
    {
        if (!m_wishes.everything)
            trap([](const QvError &) {}, [this] { m_known = readCache(m_files, m_input); });
    }

    void listPages()
    {
        TextMap<KnownPage *> known;
        for (KnownPage &page : m_known.pages)
            known.emplace(page.stamp.path, &page);
        const PageFolders folders(m_input);
        const std::vector<ProjectListing::File> &all = m_result.m_listing.files();
        for (quint32 file = 0; file < all.size(); ++file) {
            const QString name = ProjectListing::shown(all[file].path);
            const bool isStyleSheet = isStyleSheetName(name);
            if ((!isStyleSheet && !isPageName(name)) || !folders.hold(all[file].path))
                continue;
            const auto found = known.find(std::string_view(all[file].path));
            addPage(file, isStyleSheet, found == known.end() ? nullptr : found->second);
        }
        m_result.m_changed |= m_result.m_pages.size() != m_known.pages.size();
    }

    void addPage(quint32 file, bool isStyleSheet, KnownPage *known)
    {
        ScannedPage page{.file = file, .isStyleSheet = isStyleSheet, .sum = 0, .facts = {}};
        m_result.m_readAt.push_back(m_now);
        const ProjectListing::File &listed = m_result.m_listing.files()[file];
        const bool isUnchanged = known != nullptr && known->stamp.size == listed.size
                                 && known->stamp.modified == listed.modified
                                 && known->stamp.modified + coarseTime < known->stamp.readAt;
        if (isUnchanged && (isStyleSheet || wordsKnow(listed.path, known->stamp.sum))) {
            m_result.m_readAt.back() = known->stamp.readAt;
            takeOver(page, *known);
        } else {
            m_stale.push_back({m_result.m_pages.size(), known});
        }
        m_result.m_pages.push_back(std::move(page));
    }

    [[nodiscard]] bool wordsKnow(std::string_view path, quint64 sum) const
    {
        return m_wishes.words == nullptr || m_wishes.words->knows(path, sum);
    }

    static void takeOver(ScannedPage &page, KnownPage &known)
    {
        page.isFresh = false;
        page.sum = known.stamp.sum;
        page.facts = std::move(known.facts);
    }

    void readStale()
    {
        m_result.m_changed |= !m_stale.empty();
        std::vector<std::exception_ptr> failures(size_t(std::max(m_wishes.threads, 1)));
        {
            std::vector<std::jthread> others; // they stop and are waited for when this is left
            for (int thread = 1; thread < m_wishes.threads; ++thread)
                others.emplace_back([this, thread, &failures](const std::stop_token &stop) {
                    try {
                        work(thread, {{}, stop});
                    } catch (...) {
                        failures[size_t(thread)] = std::current_exception();
                    }
                });
            work(0, m_progress);
            m_next = m_stale.size();
            for (std::jthread &other : others)
                other.join();
        }
        for (const std::exception_ptr &failure : failures) {
            if (failure)
                std::rethrow_exception(failure);
        }
        for (const Stale &stale : m_stale)
            m_result.m_fresh += m_result.m_pages[stale.page].isFresh ? 1 : 0;
    }

    void work(int thread, const Progress &progress)
    {
        PageScan scan({m_input.project, m_input.language}, m_targets);
        ReadablePage text;
        for (size_t at = m_next++; at < m_stale.size(); at = m_next++) {
            ScannedPage &page = m_result.m_pages[m_stale[at].page];
            progress.step(static_cast<int>(at), static_cast<int>(m_stale.size()),
                          ProjectListing::shown(m_result.pathOf(page)));
            const auto isProblem = [&](const QvError &error) {
                page.problem = error.description();
            };
            trap(isProblem, [&] { readOne(thread, m_stale[at], scan, text); });
        }
    }

    void readOne(int thread, const Stale &stale, PageScan &scan, ReadablePage &text)
    {
        ScannedPage &page = m_result.m_pages[stale.page];
        const std::string_view path = m_result.pathOf(page);
        const QByteArray bytes = m_files.readFile(m_input.folder + ProjectListing::shown(path));
        page.sum = checksum(view(bytes));
        const bool isSame = stale.known != nullptr && stale.known->stamp.sum == page.sum
                            && stale.known->stamp.size == bytes.size();
        if (isSame && (page.isStyleSheet || wordsKnow(path, page.sum))) {
            takeOver(page, *stale.known);
        } else if (page.isStyleSheet) {
            page.facts = scan.styleSheet(bytes, path);
        } else {
            page.facts = scan.page(bytes, path, m_wishes.words == nullptr ? nullptr : &text);
            if (m_wishes.words != nullptr)
                m_wishes.words->take(thread, static_cast<quint32>(stale.page), text);
        }
    }

    FileSystem &m_files;
    const BuildInput &m_input;
    const ScanWishes &m_wishes;
    const Progress &m_progress;
    ScannedPages &m_result;
    qint64 m_now = 0;
    KnownPages m_known;
    TargetTable m_targets;
    std::vector<Stale> m_stale;
    std::atomic<size_t> m_next = 0;
};

ScannedPages ScannedPages::read(FileSystem &files, const BuildInput &input,
                                const ScanWishes &wishes, const Progress &progress)
{
    ScannedPages pages;
    Run(files, input, wishes, progress, pages).read();
    return pages;
}

/// In the order of the pages, whichever thread met a target first; what no page means any more
/// goes.
void ScannedPages::numberTargets(const std::vector<std::string> &targets)
{
    constexpr quint32 none = 0xFFFFFFFF;
    std::vector<quint32> numbers(targets.size(), none);
    m_targets.clear();
    for (ScannedPage &page : m_pages) {
        for (PageRef &ref : page.facts.refs) {
            if (ref.place != RefPlace::Project && ref.place != RefPlace::ThisPage)
                continue;
            quint32 &number = numbers[ref.target];
            if (number == none) {
                number = static_cast<quint32>(m_targets.size());
                m_targets.push_back(targets[ref.target]);
            }
            ref.target = number;
        }
    }
}

void ScannedPages::save(FileSystem &files, const BuildInput &input) const
{
    if (!m_changed)
        return;
    KnownPagesWriter known(input.project.toStdString(), input.language.toStdString(), m_targets);
    for (size_t i = 0; i < m_pages.size(); ++i) {
        const ScannedPage &page = m_pages[i];
        if (!page.problem.isEmpty())
            continue;
        const ProjectListing::File &file = m_listing.files()[page.file];
        known.add({file.path, file.size, file.modified, m_readAt[i], page.sum}, page.facts);
    }
    // Not flushed: a file that a crash left half written is noticed, and read as none.
    files.replaceFile(input.folder + cacheName, known.file(),
                      {.sync = false, .throughReadOnly = true});
}
