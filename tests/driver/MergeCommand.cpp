#include "dialogs/ProjectMerge.h"
#include "driver/Commands.h"

using namespace Qt::StringLiterals;

namespace {

int merge(Console &console, const QStringList &arguments)
{
    MergeRequest request{arguments.at(0), arguments.at(1), arguments.at(2), arguments.sliced(3)};
    if (request.language == "-"_L1)
        request.language.clear();
    const MergeResult result = ProjectMerge(console.program).merge(request);
    for (const MergeFinding &finding : result.findings)
        printLine({titleOf(finding.kind), finding.project, finding.book, finding.acronym,
                   finding.detail});
    return 0;
}

} // namespace

QList<Command> mergeCommands()
{
    return {{u"merge"_s, 4, u"NAME ID LANGUAGE|- PROJECT..."_s, merge}};
}
