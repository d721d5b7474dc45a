#include "WordJobs.h"

#include "ScanJobs.h"
#include "Spent.h"
#include "Windows.h"

#include "tools/words/SearchQuery.h"
#include "tools/words/SearchWords.h"

using namespace Qt::StringLiterals;

namespace {

/// Lists, reads and scans all pages that are not known yet, and writes the search words.
int words(const QStringList &arguments)
{
    Windows windows(u"/"_s);
    FileSystem &files = windows.console.files;
    const BuildInput input = booksIn(files, arguments.at(0));
    const int threads = arguments.value(1, u"2"_s).toInt();
    SearchWords search(files, input, threads);
    const ScanWishes wishes{.words = &search, .threads = threads};
    const ScannedPages pages = ScannedPages::read(files, input, wishes);
    const double read = cpuSeconds();
    pages.save(files, input);
    search.prepare(pages);
    const ToolReport report = search.putInPlace();
    number("writing, CPU", cpuSeconds() - read, "s");
    std::puts(qPrintable(report.summary));
    return 0;
}

/// Searches that folder and shows the best hits.
int query(const QStringList &arguments)
{
    Windows windows(u"/"_s);
    FileSystem &files = windows.console.files;
    const double before = cpuSeconds();
    SearchQuery search(files, withBackslash(files.productPath(arguments.at(0))));
    const double opened = cpuSeconds();
    const SearchResult result = search.find(arguments.at(1));
    number("opening, CPU", (opened - before) * 1000, "ms");
    number("asking, CPU", (cpuSeconds() - opened) * 1000, "ms");
    number("hits", static_cast<double>(result.hits.size()), "");
    for (const SearchHit &hit : result.hits.first(std::min<qsizetype>(10, result.hits.size())))
        std::printf("%8.2f  %s  (%s)\n", hit.score, qPrintable(hit.page.title),
                    qPrintable(hit.reason));
    if (!result.missing.isEmpty())
        std::printf("nowhere: %s\n", qPrintable(result.missing.join(u", "_s)));
    return 0;
}

} // namespace

QList<Job> wordJobs()
{
    return {{"words"_L1, 1, false, words}, {"query"_L1, 2, false, query}};
}
