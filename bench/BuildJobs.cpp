#include "BuildJobs.h"

#include "ScanJobs.h"
#include "Windows.h"

#include "tools/build/BuildRun.h"

#include <QElapsedTimer>

using namespace Qt::StringLiterals;

namespace {

/// What "all", "words", "links" or "checks" orders.
BuildOrder orderOf(const QString &what)
{
    if (what == "words"_L1)
        return {.tools = {BuildTool::SearchIndex}, .checks = CheckLevel::Off};
    if (what == "links"_L1)
        return {.tools = {BuildTool::DocToDoc}, .checks = CheckLevel::Off};
    if (what == "checks"_L1)
        return {.tools = {}, .checks = CheckLevel::Everything};
    return {.tools = QList(allBuildTools.begin(), allBuildTools.end())};
}

/// Builds a folder of the machine in which every folder is a book: all, or one tool alone.
int build(const QStringList &arguments)
{
    Windows windows(u"/"_s);
    FileSystem &files = windows.console.files;
    BuildOrder order = orderOf(arguments.at(2));
    order.threads = arguments.at(1).toInt();
    QElapsedTimer timer;
    timer.start();
    const BuildObserver observer{.begins = {},
                                 .ends =
                                     [&](BuildStage stage, const ToolReport &report) {
                                         std::printf(
                                             "%.3f s %s: %s\n", double(timer.restart()) / 1000,
                                             qPrintable(nameOf(stage)), qPrintable(report.summary));
                                     },
                                 .outdated = [] { std::puts("The pages changed meanwhile."); }};
    const BuildResult result =
        runBuild(files, booksIn(files, arguments.at(0)), order, observer, {});
    return result.success ? 0 : 1;
}

} // namespace

QList<Job> buildJobs()
{
    return {{"build"_L1, 3, false, build}};
}
