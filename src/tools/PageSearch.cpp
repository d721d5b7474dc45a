#include "tools/PageSearch.h"

#include "platform/QvError.h"
#include "startup/PageText.h"
#include "tools/ByteSieve.h"
#include "tools/OrderedWork.h"
#include "tools/PageReference.h"
#include "tools/TextLines.h"

#include <algorithm>
#include <thread>

using namespace Qt::StringLiterals;

namespace {

constexpr int together = 16;           // pages that a thread takes at a time
constexpr int deepest = 64;            // folders
constexpr qsizetype around = 100;      // characters of the line shown on each side of a hit
constexpr qsizetype mostHits = 20'000; // of one page

void collect(FileSystem &files, const QString &projectFolder, const QString &folder, int depth,
             QStringList &pages)
{
    for (const FolderEntry &entry : files.kinds(projectFolder + folder)) {
        const QString path = folder + u'\\' + entry.name;
        if (entry.status.kind == FileKind::File && isPageName(entry.name))
            pages.append(path);
        else if (entry.status.kind == FileKind::Folder && depth < deepest)
            collect(files, projectFolder, path, depth + 1, pages);
    }
}

/// The hit with what stands around it in its line, to which `lines` goes on.
PageHit shownHit(const QString &text, TextLines &lines, const TextHit &hit)
{
    lines.goTo(hit.start);
    const qsizetype from = qMax(lines.begin(), hit.start - around);
    const qsizetype end = qMin(hit.start + hit.length, lines.end());
    const qsizetype to = qMin(lines.end(), end + around);
    PageHit shown{hit, lines.number(), text.sliced(from, to - from), hit.start - from, 0, {}};
    shown.length = qMin(hit.length, shown.text.size() - shown.begin);
    for (QChar &c : shown.text)
        c = c == u'\t' || c == u'\r' ? QChar(u' ') : c;
    return shown;
}

// What could not be written back letter by letter is not touched.
void judgeReplacing(FoundPage &page, const PageText &content, const QByteArray &bytes,
                    const QString &replaced)
{
    trap([&](const QvError &error) { page.refusal = error.description(); },
         [&] {
             const bool faithful =
                 !content.damaged && encodePage(content.text, content.encoding) == bytes;
             if (!faithful)
                 page.refusal = u"Some bytes of this page are no text in %1."_s.arg(
                     QString::fromLatin1(content.encoding.name));
             else
                 (void)encodePage(replaced, content.encoding);
         });
}

void showReplacing(FoundPage &page, const TextFinder &finder, const PageText &content,
                   const QString &replacement)
{
    for (PageHit &hit : page.hits)
        hit.after = finder.replacementOf(content.text, hit.place, replacement);
    page.hits.removeIf([&](const PageHit &hit) {
        return hit.after == QStringView(content.text).sliced(hit.place.start, hit.place.length);
    });
}

class Search final
{
public:
    Search(FileSystem &files, const SearchedPages &pages, const PageQuery &query)
        : m_files(files)
        , m_pages(pages)
        , m_query(query)
        , m_finder(query.find)
        , m_sieve(query.find)
    {
    }

    /// Nothing when the page is of no concern.
    [[nodiscard]] std::optional<FoundPage> page(const QString &path) const
    {
        FoundPage found{path, {}, true, {}, false, {}, 0};
        trap([&](const QvError &error) { found.problem = error.description(); },
             [&] { look(found); });
        const bool matters = !found.hits.isEmpty() || !found.problem.isEmpty() || !found.complete;
        return matters ? std::optional(found) : std::nullopt;
    }

private:
    void look(FoundPage &page) const
    {
        const QString path = m_pages.projectFolder + page.path;
        const QByteArray bytes = m_files.readFile(path);
        if (!m_sieve.mayHold(bytes))
            return;
        const PageText content = decodePage(bytes, m_pages.language);
        const TextFinder::Found found = m_finder.in(content.text, mostHits);
        page.complete = found.complete;
        TextLines lines(content.text);
        page.hits.reserve(found.hits.size());
        for (const TextHit &hit : found.hits)
            page.hits.append(shownHit(content.text, lines, hit));
        if (found.hits.isEmpty() || !m_query.replacement)
            return;
        page.sum = qHash(bytes);
        page.locked = m_files.status(path).readOnly;
        showReplacing(page, m_finder, content, *m_query.replacement);
        judgeReplacing(page, content, bytes,
                       m_finder.replaced(content.text, found.hits, *m_query.replacement));
    }

    FileSystem &m_files;
    const SearchedPages &m_pages;
    const PageQuery &m_query;
    const TextFinder m_finder;
    const ByteSieve m_sieve;
};

} // namespace

QStringList pagesBelow(FileSystem &files, const QString &projectFolder, const QStringList &folders)
{
    QStringList pages;
    for (const QString &folder : folders) {
        if (files.folderExists(projectFolder + folder))
            collect(files, projectFolder, folder, 0, pages);
    }
    return pages;
}

void searchPages(FileSystem &files, const SearchedPages &pages, const PageQuery &query,
                 const Progress &progress, const std::function<void(const FoundPage &)> &found)
{
    const Search search(files, pages, query);
    const int all = static_cast<int>(pages.paths.size());
    const int pieces = (all + together - 1) / together;
    QList<QList<FoundPage>> results(pieces);
    const auto resultOf = results.data(); // one thread each
    const auto work = [&](int piece) {
        const int end = qMin(all, (piece + 1) * together);
        for (int at = piece * together; at < end && !progress.stop.stop_requested(); ++at) {
            if (auto page = search.page(pages.paths[at]))
                resultOf[piece].append(*page);
        }
    };
    const auto done = [&](int piece) {
        progress.step(qMin(all, (piece + 1) * together), all);
        for (const FoundPage &page : std::exchange(resultOf[piece], {}))
            found(page);
    };
    const int threads = qMax(2, static_cast<int>(std::thread::hardware_concurrency()));
    inOrder(pieces, threads, progress.stop, work, done);
}

QByteArray replacedPage(FileSystem &files, const SearchedPages &pages, const FoundPage &page,
                        const PageQuery &query, const std::function<bool(qsizetype)> &isWanted)
{
    const QByteArray bytes = files.readFile(pages.projectFolder + page.path);
    if (qHash(bytes) != page.sum)
        throw QvError(PathFileAccess, {},
                      u"The page %1 was changed since it was searched. Nothing was replaced; look "
                      "for the text again."_s.arg(page.path));
    const PageText content = decodePage(bytes, pages.language);
    QList<TextHit> hits;
    for (const PageHit &hit : page.hits)
        hits.append(hit.place);
    const TextFinder finder(query.find);
    return encodePage(
        finder.replaced(content.text, hits, query.replacement.value_or(QString()), isWanted),
        content.encoding);
}
