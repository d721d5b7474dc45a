#include "driver/Commands.h"

#include "components/LinkIDMerger.h"
#include "dialogs/ProjectDeletion.h"
#include "dialogs/merge/ProjectMerge.h"
#include "tools/pack/PackProject.h"
#include "tools/rename/ProjectRename.h"

using namespace Qt::StringLiterals;

namespace {

int deleteProject(Console &console, const QStringList &arguments)
{
    const bool alsoFiles = arguments.value(1, u"yes"_s) == "yes"_L1;
    ProjectDeletion(console.program).remove(arguments.at(0), alsoFiles);
    return 0;
}

int unmerge(Console &console, const QStringList &arguments)
{
    console.components.linkIDMerger.UnMergeQVSelection(arguments.at(0));
    return 0;
}

int release(Console &console, const QStringList &arguments)
{
    const QDate date = QDate::fromString(arguments.at(1), Qt::ISODate);
    if (!date.isValid())
        throw QvError(InvalidCall, {}, u"This is no date: "_s + arguments.at(1));
    console.catalogue().release(arguments.at(0), date);
    return 0;
}

int reopen(Console &console, const QStringList &arguments)
{
    console.catalogue().reopen(arguments.at(0));
    return 0;
}

int renameProject(Console &console, const QStringList &arguments)
{
    ProjectRename(console.program, arguments.at(0), arguments.at(1), true).run();
    return 0;
}

/// What every start of the program does before it lists the projects.
int finishRenamesNow(Console &console, const QStringList &)
{
    const QStringList problems = finishRenames(console.program);
    for (const QString &problem : problems)
        printLine({problem});
    return problems.isEmpty() ? 0 : 1;
}

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

int pack(Console &console, const QStringList &arguments)
{
    const BuildInput input =
        readBuildInput(console.session, console.files, arguments.at(0), u"ENU"_s);
    const PackResult result = packProject(console.files, input, {});
    printLine({result.path, u"files"_s, QString::number(result.count), u"reused"_s,
               QString::number(result.reused)});
    return 0;
}

} // namespace

QList<Command> projectCommands()
{
    return {
        {u"delete"_s, 1, u"NAME [yes|no]"_s, deleteProject},
        {u"unmerge"_s, 1, u"NAME"_s, unmerge},
        {u"release"_s, 2, u"NAME DATE"_s, release},
        {u"add-date"_s, 2, u"NAME DATE"_s, release},
        {u"reopen"_s, 1, u"NAME"_s, reopen},
        {u"rename-project"_s, 2, u"NAME NEW-NAME"_s, renameProject},
        {u"finish-renames"_s, 0, {}, finishRenamesNow},
        {u"pack"_s, 1, u"NAME"_s, pack},
        {u"merge"_s, 4, u"NAME ID LANGUAGE|- PROJECT..."_s, merge},
    };
}
