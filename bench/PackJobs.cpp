#include "PackJobs.h"

#include "Windows.h"

#include "tools/pack/PackProject.h"

using namespace Qt::StringLiterals;

namespace {

BuildInput inputOf(Windows &windows, const QString &project)
{
    return readBuildInput(windows.console.session, windows.console.files, project, u"ENU"_s);
}

int pack(const QStringList &arguments)
{
    Windows windows(arguments.at(0));
    const int threads = arguments.value(2, u"2"_s).toInt();
    const PackResult result =
        packProject(windows.console.files, inputOf(windows, arguments.at(1)), {.threads = threads});
    number("files", result.count, "");
    number("of them reused", result.reused, "");
    number("bytes", static_cast<double>(result.bytes), "");
    number("packed", static_cast<double>(result.packedBytes), "");
    return 0;
}

int plan(const QStringList &arguments)
{
    Windows windows(arguments.at(0));
    FileSystem &files = windows.console.files;
    const BuildInput input = inputOf(windows, arguments.at(1));
    const PackPlan plan = planPack(files, input, ProjectListing::read(files, input.folder), {});
    number("added", plan.count(PackItem::Change::Added), "");
    number("changed", plan.count(PackItem::Change::Changed), "");
    number("removed", plan.count(PackItem::Change::Removed), "");
    number("unchanged", plan.count(PackItem::Change::Unchanged), "");
    return 0;
}

} // namespace

QList<Job> packJobs()
{
    return {{"pack"_L1, 2, false, pack}, {"packplan"_L1, 2, false, plan}};
}
