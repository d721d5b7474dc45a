#include "driver/Commands.h"

#include "platform/QvError.h"
#include "qvdev/ConsoleWorld.h"
#include "tools/build/FreshFolder.h"
#include "tools/build/PageAnchors.h"
#include "tools/context/ContextSettings.h"
#include "tools/links/DocToDoc.h"
#include "tools/links/LinkCheck.h"
#include "tools/navigation/QuickNavIndex.h"
#include "tools/words/SearchWords.h"

using namespace Qt::StringLiterals;

namespace {

void finish(FileSystem &files, const BuildInput &input)
{
    for (const auto folder : {"DocToDoc"_L1, "DynamicHelp"_L1, "Search_Words"_L1})
        recoverFreshFolder(files, input.folder + folder);
}

BuildInput inputOf(ConsoleWorld &world, const Call &call)
{
    const CatalogueEntry project = world.project(call.arguments.at(0));
    return readBuildInput(world.session, world.files, project.name, project.language);
}

/// What every build does before it begins.
ExitStatus finishBuild(ConsoleWorld &world, const Call &call)
{
    finish(world.files, inputOf(world, call));
    return Done;
}

/// What spares the next build some reading is not kept, so that the same project gives the same
/// bytes: it holds times, and is not flushed to the disk.
ToolReport makeWords(FileSystem &files, const BuildInput &input)
{
    SearchWords words(files, input, 2);
    words.prepare(ScannedPages::read(files, input, {.words = &words}));
    const ToolReport report = words.putInPlace();
    files.removeFile(input.folder + u"QV_SearchWords.bin"_s);
    return report;
}

ToolReport run(FileSystem &files, const BuildInput &input, const QString &tool)
{
    if (tool == "words"_L1)
        return makeWords(files, input);
    const ScannedPages pages = ScannedPages::read(files, input, {});
    const PageAnchors anchors(pages);
    if (tool == "context"_L1)
        return writeContextSettings(files, input, pages, {});
    if (tool == "quicknav"_L1)
        return writeQuickNavIndex(files, input, pages, anchors, {});
    if (tool == "links"_L1)
        return linkDocuments(files, input, pages, LinkCheck(input, pages, anchors), {});
    throw QvError(InvalidCall, {}, u"There is no tool "_s + tool);
}

ExitStatus runTool(ConsoleWorld &world, const Call &call)
{
    const BuildInput input = inputOf(world, call);
    finish(world.files, input);
    const ToolReport report = run(world.files, input, call.arguments.at(1));
    QStringList lines{report.summary};
    for (const Finding &finding : report.findings)
        lines.append(logLine(finding));
    world.output.result(lines.join(u'\n'), {});
    return Done;
}

} // namespace

QList<Command> toolCommands()
{
    return {
        {u"run-tool"_s,
         u"PROJECT links|context|quicknav|words"_s,
         2,
         2,
         u"Run one tool of a build."_s,
         {},
         {},
         runTool},
        {u"finish-build"_s,
         u"PROJECT"_s,
         1,
         1,
         u"Finish a build that was cut off."_s,
         {},
         {},
         finishBuild},
    };
}
