// The list of projects: showing it, ranks, releasing, deleting.
#include "catalogue/RankRule.h"
#include "dialogs/ProjectDeletion.h"
#include "platform/QvError.h"
#include "qvdev/Command.h"
#include "qvdev/ConsoleWorld.h"
#include "resources/Texts.h"

#include <QCommandLineParser>

using namespace Qt::StringLiterals;

namespace {

ExitStatus list(ConsoleWorld &world, const Call &)
{
    QJsonArray rows;
    for (const CatalogueEntry &entry : world.catalogue().entries()) {
        if (entry.name != favourites)
            rows.append(QJsonObject{{"name"_L1, entry.name},
                                    {"id"_L1, entry.id},
                                    {"language"_L1, entry.language},
                                    {"rank"_L1, entry.rank},
                                    {"released"_L1, entry.addDate}});
    }
    world.output.table({{"name"_L1, "PROJECT"_L1},
                        {"id"_L1, "ID"_L1},
                        {"language"_L1, "LANGUAGE"_L1},
                        {"rank"_L1, "RANK"_L1},
                        {"released"_L1, "RELEASED"_L1}},
                       rows);
    return Done;
}

/// "NAME=NUMBER" as the ranking component takes it.
QString rankItem(ConsoleWorld &world, const QString &argument)
{
    const qsizetype mark = argument.lastIndexOf(u'=');
    if (mark < 0)
        throw QvError(InvalidCall, {}, u"This is no NAME=NUMBER: "_s + argument);
    const QString name = world.project(argument.first(mark)).name;
    const auto rank = rankIn(argument.sliced(mark + 1), world.locale);
    if (!rank)
        throw QvError(InvalidCall, {}, u"A rank is a whole number from 1 to 32000: "_s + argument);
    return name + u'#' + QString::number(*rank);
}

ExitStatus rank(ConsoleWorld &world, const Call &call)
{
    QStringList items;
    for (const QString &argument : call.arguments)
        items.append(rankItem(world, argument));
    world.catalogue().UpdateRankInSelectionFile(*world.parts.ranking, items);
    world.output.result(u"The ranks are stored."_s, {{"ranked"_L1, items.size()}});
    return Done;
}

QDate dateIn(ConsoleWorld &world, const Call &call)
{
    if (!call.options.isSet(u"date"_s))
        return world.clock.now().date();
    const QString text = call.options.value(u"date"_s);
    const QDate date = QDate::fromString(text, Qt::ISODate);
    if (!date.isValid())
        throw QvError(InvalidCall, {}, u"This is no date (YYYY-MM-DD): "_s + text);
    return date;
}

ExitStatus release(ConsoleWorld &world, const Call &call)
{
    const CatalogueEntry project = world.project(call.arguments.first());
    const QDate date = dateIn(world, call);
    world.requireBuilt({world.program, project.name, project.language});
    world.catalogue().release(project.name, date);
    world.output.result(u"The set is released."_s, {{"project"_L1, project.name},
                                                    {"released"_L1, date.toString(Qt::ISODate)}});
    return Done;
}

ExitStatus reopen(ConsoleWorld &world, const Call &call)
{
    const QString name = world.project(call.arguments.first()).name;
    world.catalogue().reopen(name);
    world.output.result(u"The set can be continued again."_s, {{"project"_L1, name}});
    return Done;
}

bool mayDelete(ConsoleWorld &world, const QString &name)
{
    world.messages.setAdvice(u"Give --yes to delete it. Nothing was deleted."_s);
    return world.messages.show({.text = text(Text::SureToDelete),
                                .buttons = Buttons::OkCancel,
                                .details = u"Project: "_s + name})
           == Answer::Ok;
}

// The window asks whether what another author has not saved may be lost; a script may not say so.
void requireUnused(const ProjectDeletion &deletion, const QString &name)
{
    if (deletion.isInUse(name))
        throw QvError(
            PermissionDenied, {},
            u"The project \"%1\" is open in QV Developer. What its author has not saved "
            "is lost when its files go. Close it there first. Nothing was deleted"_s.arg(name));
}

QString worded(const ProjectDeletion::Result &result, const QString &name)
{
    using Outcome = ProjectDeletion::Outcome;
    if (result.outcome == Outcome::Unlisted)
        return u"%1 was taken out of the list. Its files are kept."_s.arg(name);
    if (result.outcome == Outcome::LeftAside)
        return u"The project was deleted, but not all of its files: what is left lies in %1 and is "
               "removed when QV Developer starts again."_s.arg(result.leftAside);
    return u"%1 and its files were deleted."_s.arg(name);
}

ExitStatus deleteProject(ConsoleWorld &world, const Call &call)
{
    const QString name = world.project(call.arguments.first()).name;
    const bool alsoFiles = call.options.isSet(u"files"_s);
    ProjectDeletion deletion(world.program);
    if (alsoFiles)
        requireUnused(deletion, name);
    if (!mayDelete(world, name))
        return Refused;
    const auto result = deletion.remove(name, alsoFiles, world.progress());
    world.output.result(
        worded(result, name),
        {{"project"_L1, name}, {"files"_L1, alsoFiles}, {"leftAside"_L1, result.leftAside}});
    if (result.outcome != ProjectDeletion::Outcome::LeftAside)
        return Done;
    return world.isStopped() ? Refused : Findings;
}

} // namespace

QList<Command> projectCommands()
{
    return {
        {u"list"_s, {}, 0, 0, u"List the projects of the server."_s, {}, {}, list},
        {u"rank"_s,
         u"NAME=NUMBER..."_s,
         1,
         -1,
         u"Set the ranks of book sets, 1 to 32000."_s,
         {},
         {},
         rank},
        {u"release"_s,
         u"NAME [--date DATE]"_s,
         1,
         1,
         u"Release a set that is built: it can be copied, and not continued."_s,
         {{u"date"_s, u"The day of its addition (YYYY-MM-DD), not today."_s, u"DATE"_s}},
         {},
         release},
        {u"reopen"_s, u"NAME"_s, 1, 1, u"Let a released set be continued again."_s, {}, {}, reopen},
        {u"delete"_s,
         u"NAME [--files] --yes"_s,
         1,
         1,
         u"Take a project out of the list."_s,
         {{u"files"_s, u"Delete its files too."_s}},
         {},
         deleteProject},
    };
}
