#include "driver/Commands.h"

#include "tools/build/FreshFolder.h"
#include "tools/build/PageAnchors.h"
#include "tools/context/ContextSettings.h"
#include "tools/links/DocToDoc.h"
#include "tools/links/LinkCheck.h"
#include "tools/navigation/QuickNavIndex.h"
#include "tools/words/SearchWords.h"

#include <optional>

using namespace Qt::StringLiterals;

namespace {

void finish(FileSystem &files, const BuildInput &input)
{
    for (const auto folder : {"DocToDoc"_L1, "DynamicHelp"_L1, "Search_Words"_L1})
        recoverFreshFolder(files, input.folder + folder);
}

BuildInput inputOf(Console &console, const QString &project)
{
    return readBuildInput(console.session, console.files, project, u"ENU"_s);
}

/// What every build does before it begins.
int finishBuild(Console &console, const QStringList &arguments)
{
    finish(console.files, inputOf(console, arguments.at(0)));
    return 0;
}

/// What spares the next build some reading is not kept, so that the same project gives the same
/// bytes: it holds times, and is not flushed to the disk.
ToolReport run(FileSystem &files, const BuildInput &input, const QString &tool)
{
    std::optional<SearchWords> words;
    if (tool == "words"_L1)
        words.emplace(files, input, 2);
    const ScannedPages pages =
        ScannedPages::read(files, input, {.words = words ? &*words : nullptr});
    if (words) {
        words->prepare(pages);
        const ToolReport report = words->putInPlace();
        files.removeFile(input.folder + u"QV_SearchWords.bin"_s);
        return report;
    }
    if (tool == "context"_L1)
        return writeContextSettings(files, input, pages, {});
    const PageAnchors anchors(pages);
    if (tool == "quicknav"_L1)
        return writeQuickNavIndex(files, input, pages, anchors, {});
    return linkDocuments(files, input, pages, LinkCheck(input, pages, anchors), {});
}

int build(Console &console, const QStringList &arguments)
{
    const BuildInput input = inputOf(console, arguments.at(0));
    finish(console.files, input);
    const ToolReport report = run(console.files, input, arguments.at(1));
    printLine({report.summary});
    for (const Finding &finding : report.findings)
        printLine({logLine(finding)});
    return 0;
}

/// Gives the pages of a book a context id each, with the numbers from one on.
int numberPages(Console &console, const QStringList &arguments)
{
    BookFile file(console.session, console.files);
    const Toc toc = TableOfContents(console.session, console.files).read(arguments.at(0));
    for (const TocBook &entry : toc.books) {
        if (entry.acronym != arguments.at(1))
            continue;
        Book book = file.read(arguments.at(0), entry);
        int number = arguments.at(2).toInt();
        for (BookPage &page : book.pages) {
            page.contextIds = {{u"IDH_"_s + page.id, QString::number(number)}};
            ++number;
        }
        file.write(arguments.at(0), entry, book);
        return 0;
    }
    return 1;
}

} // namespace

QList<Command> buildCommands()
{
    return {
        {u"build"_s, 2, u"NAME links|context|quicknav|words"_s, build},
        {u"number-pages"_s, 3, u"NAME ACRONYM FROM"_s, numberPages},
        {u"finish-build"_s, 1, u"NAME"_s, finishBuild},
    };
}
