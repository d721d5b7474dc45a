#include "CheckJobs.h"

#include "ScanJobs.h"
#include "Spent.h"
#include "Windows.h"

#include "tools/build/PageAnchors.h"
#include "tools/build/ScannedPages.h"
#include "tools/checks/QualityChecks.h"
#include "tools/links/LinkCheck.h"

#include <map>

using namespace Qt::StringLiterals;

namespace {

/// Everything from listing the files to the written report; all pages are read.
int check(const QStringList &arguments)
{
    Windows windows(u"/"_s);
    FileSystem &files = windows.console.files;
    const BuildInput input = booksIn(files, arguments.at(0));
    const int threads = arguments.value(1, u"2"_s).toInt();
    const ScannedPages pages = ScannedPages::read(
        files, input, {.words = nullptr, .everything = true, .threads = threads});
    const PageAnchors anchors(pages);
    const LinkCheck links(input, pages, anchors);
    const double before = cpuSeconds();
    QualityChecks checks(files, input, pages, links, CheckLevel::Everything);
    checks.look({});
    const ToolReport report = checks.finish();
    number("checks alone, CPU", cpuSeconds() - before, "s");
    std::map<QString, int> counts;
    for (const Finding &finding : report.findings)
        ++counts[finding.code];
    for (const auto &[code, count] : counts)
        number(qPrintable(code), count, "");
    std::puts(qPrintable(report.summary));
    return 0;
}

} // namespace

QList<Job> checkJobs()
{
    return {{"check"_L1, 1, false, check}};
}
