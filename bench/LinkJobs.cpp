#include "LinkJobs.h"

#include "ScanJobs.h"
#include "Windows.h"

#include "tools/build/PageAnchors.h"
#include "tools/links/DocToDoc.h"
#include "tools/links/LinkCheck.h"

using namespace Qt::StringLiterals;

namespace {

/// Lists, reads, scans and checks everything, whatever is known; writes nothing unless it is asked
/// to.
int links(const QStringList &arguments)
{
    Windows windows(u"/"_s);
    FileSystem &files = windows.console.files;
    const BuildInput input = booksIn(files, arguments.at(0));
    const ScanWishes wishes{.everything = true, .threads = arguments.value(1, u"2"_s).toInt()};
    const ScannedPages pages = ScannedPages::read(files, input, wishes);
    const LinkCheck check(input, pages, PageAnchors(pages));
    number("pages", static_cast<double>(pages.pages().size()), "");
    number("references", static_cast<double>(check.count()), "");
    number("not good", static_cast<double>(check.bad().size()), "");
    if (arguments.value(2) == "write"_L1)
        std::puts(qPrintable(linkDocuments(files, input, pages, check, {}).summary));
    return 0;
}

} // namespace

QList<Job> linkJobs()
{
    return {{"links"_L1, 1, false, links}};
}
