#include "driver/Commands.h"

#include "components/LinkIDMerger.h"
#include "dialogs/ProjectDeletion.h"

using namespace Qt::StringLiterals;

namespace {

ProjectCatalogue catalogue(Console &console)
{
    return {console.session, console.files};
}

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
    catalogue(console).release(arguments.at(0), date);
    return 0;
}

int reopen(Console &console, const QStringList &arguments)
{
    catalogue(console).reopen(arguments.at(0));
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
    };
}
