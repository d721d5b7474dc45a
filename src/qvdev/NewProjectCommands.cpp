// Making projects: empty ones, copies, merged and migrated ones.
#include "catalogue/StatusIndicators.h"
#include "dialogs/LegacyMigration.h"
#include "dialogs/ProjectCreation.h"
#include "dialogs/merge/ProjectMerge.h"
#include "platform/Paths.h"
#include "platform/QvError.h"
#include "qvdev/Command.h"
#include "qvdev/ConsoleWorld.h"
#include "resources/Texts.h"

#include <QCommandLineParser>

#include <algorithm>
#include <functional>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

/// What a command has to say of the project it made.
struct Made
{
    QStringList lines = {};
    QJsonObject object = {};
    ExitStatus status = Done;
};

using Making = std::function<std::optional<Made>(ProjectCreation &)>;

QString checked(const QString &text, XmlCharacters::What what, Text whenEmpty)
{
    const QString trimmed = text.trimmed();
    const QString problem =
        trimmed.isEmpty() ? ::text(whenEmpty) : NameRules::problemOf(trimmed, what);
    if (!problem.isEmpty())
        throw QvError(InvalidCall, {}, problem);
    return trimmed;
}

QString languageIn(const Call &call)
{
    static constexpr auto languages = "ENU CHS CHT DEU JPN KOR"_L1;
    const QString language =
        call.options.isSet(u"language"_s) ? call.options.value(u"language"_s).toUpper() : u"ENU"_s;
    if (!QString(languages).split(u' ').contains(language))
        throw QvError(
            InvalidCall, {},
            u"There is no language \"%1\". The languages are %2"_s.arg(language, languages));
    return language;
}

/// Makes the project of the call the session's; returns its name as typed.
QString takeNames(ConsoleWorld &world, const Call &call, const QString &typed,
                  const QString &language)
{
    using What = XmlCharacters::What;
    const QString name = checked(typed, What::ProjectName, Text::PleaseEnterProjectName);
    const QString id =
        checked(call.options.value(u"id"_s), What::ProjectId, Text::PleaseEnterProjectId);
    ProjectCreation(world.program).name(name, id, language);
    return name;
}

/// What shall become of a folder that is there already.
void takeFolderAnswer(ConsoleWorld &world, const Call &call)
{
    const QString answer = call.options.value(u"existing-folder"_s);
    if (answer == "list"_L1)
        world.messages.allow(u"List It Again"_s);
    else if (answer == "aside"_L1)
        world.messages.allow(u"Move It Aside and Start New"_s);
    else if (!answer.isEmpty())
        throw QvError(InvalidCall, {}, u"--existing-folder is \"list\" or \"aside\""_s);
    world.messages.setAdvice(
        u"Give --existing-folder list or --existing-folder aside. Nothing was made."_s);
}

void show(ConsoleWorld &world, Made made)
{
    const QString &name = world.session.projectName;
    const QString folder = world.files.nativePath(projectFolder(world.session.serverPath, name));
    made.lines.prepend(u"The project \"%1\" lies in %2"_s.arg(name, folder));
    made.object.insert("project"_L1, name);
    made.object.insert("folder"_L1, folder);
    world.output.result(made.lines.join(u'\n'), made.object);
}

/// The wizard's way from names to a project of the session.
ExitStatus make(ConsoleWorld &world, const Call &call, const Making &making)
{
    ProjectCreation creation(world.program);
    if (!creation.nameIsFree())
        throw QvError(InvalidCall, {}, text(Text::ProjectAlreadyExists));
    takeFolderAnswer(world, call);
    std::optional<Made> made;
    switch (creation.settleFolder()) {
    case ProjectCreation::FolderAnswer::Cancel:
        return Refused;
    case ProjectCreation::FolderAnswer::ListAgain:
        creation.listAgain();
        made.emplace();
        break;
    case ProjectCreation::FolderAnswer::MakeNew:
        made = making(creation);
    }
    if (!made)
        return Refused;
    show(world, *made);
    return made->status;
}

LegacyMigration::Runner withProgress(ConsoleWorld &world)
{
    return [&world](const auto &work) { work(world.progress()); };
}

ExitStatus addNew(ConsoleWorld &world, const Call &call)
{
    const QString typed = takeNames(world, call, call.arguments.at(0), languageIn(call));
    return make(world, call, [&](ProjectCreation &creation) {
        return creation.addNew(typed) ? std::optional(Made()) : std::nullopt;
    });
}

ExitStatus copy(ConsoleWorld &world, const Call &call)
{
    const CatalogueEntry source = world.project(call.arguments.at(0));
    if (source.addDate.isEmpty())
        throw QvError(InvalidCall, {},
                      u"The project \"%1\" is not released. Only released sets can be copied"_s.arg(
                          source.name));
    takeNames(world, call, call.arguments.at(1), languageIn(call));
    return make(world, call, [&](ProjectCreation &creation) {
        creation.addCopy(source.name, withProgress(world));
        return std::optional(Made());
    });
}

/// What a merge does as a matter of course; the rest is missing from the new project.
bool isRenaming(const MergeFinding &finding)
{
    using Kind = MergeFinding::Kind;
    return finding.kind == Kind::BookRenamed || finding.kind == Kind::FolderRenamed;
}

Made madeBy(const MergeResult &result)
{
    Made made;
    QJsonArray findings;
    for (const MergeFinding &finding : result.findings) {
        QStringList cells{titleOf(finding.kind), finding.project, finding.book, finding.detail};
        cells.removeAll(QString());
        made.lines.append(cells.join(u": "_s));
        findings.append(QJsonObject{{"kind"_L1, titleOf(finding.kind)},
                                    {"project"_L1, finding.project},
                                    {"book"_L1, finding.book},
                                    {"acronym"_L1, finding.acronym},
                                    {"detail"_L1, finding.detail}});
    }
    made.object = {{"base"_L1, result.base},
                   {"order"_L1, QJsonArray::fromStringList(result.order)},
                   {"books"_L1, result.books},
                   {"findings"_L1, findings}};
    made.status = std::ranges::all_of(result.findings, isRenaming) ? Done : Findings;
    return made;
}

// A merged set takes the language of its base project, and its name gets no prefix.
ExitStatus merge(ConsoleWorld &world, const Call &call)
{
    MergeRequest request;
    request.projects = call.arguments.sliced(1);
    request.name = takeNames(world, call, call.arguments.at(0), u"ENU"_s);
    request.id = world.session.projectId;
    world.session.projectLanguage = world.project(request.projects.first()).language;
    return make(world, call, [&](ProjectCreation &) {
        std::optional<Made> made;
        try {
            made = madeBy(ProjectMerge(world.program).merge(request, world.progress()));
        } catch (const CopyFailure &failure) {
            endAfterFailedCopy(world.program, failure);
        }
        StatusIndicators(world.session, world.files, world.windows).AddProjectName();
        return made;
    });
}

Made madeBy(const ConversionReport &report)
{
    Made made;
    QJsonArray counts, problems;
    for (const ConversionCount &count : report.counts) {
        made.lines.append(u"%1: %2 of %3 rows taken over"_s.arg(
            count.table, QString::number(count.written), QString::number(count.read)));
        counts.append(QJsonObject{
            {"table"_L1, count.table}, {"read"_L1, count.read}, {"written"_L1, count.written}});
    }
    for (const ConversionProblem &problem : report.problems) {
        QStringList cells{problem.table, problem.row, problem.text};
        cells.removeAll(QString());
        made.lines.append(cells.join(u": "_s));
        problems.append(QJsonObject{
            {"table"_L1, problem.table}, {"row"_L1, problem.row}, {"text"_L1, problem.text}});
    }
    made.object = {{"tables"_L1, counts}, {"problems"_L1, problems}};
    made.status = report.problems.isEmpty() ? Done : Findings;
    return made;
}

ExitStatus migrate(ConsoleWorld &world, const Call &call)
{
    const QString database = world.productPath(call.arguments.at(0));
    takeNames(world, call, call.arguments.at(1), languageIn(call));
    return make(world, call, [&](ProjectCreation &) -> std::optional<Made> {
        if (call.options.isSet(u"accept-partly"_s))
            world.messages.allow(u"Migrate What Can Be Read"_s);
        world.messages.setAdvice(
            u"Give --accept-partly to take what can be read. Nothing was made."_s);
        LegacyMigration migration(world.program);
        if (!migration.convert(database, withProgress(world)))
            return std::nullopt;
        migration.makeSearchWords(withProgress(world));
        migration.makeCurrent();
        return madeBy(migration.report());
    });
}

QList<QCommandLineOption> with(const QList<QCommandLineOption> &more)
{
    return QList<QCommandLineOption>{
               {u"id"_s, u"The ID of the new project."_s, u"ID"_s},
               {u"existing-folder"_s,
                u"What becomes of an unlisted folder of that name: \"list\" or \"aside\"."_s,
                u"WHAT"_s}}
           + more;
}

} // namespace

QList<Command> newProjectCommands()
{
    const QCommandLineOption language{
        u"language"_s, u"ENU (if it is not given), CHS, CHT, DEU, JPN or KOR."_s, u"LANGUAGE"_s};
    const QCommandLineOption partly{u"accept-partly"_s,
                                    u"Take what can be read of a damaged database."_s};
    const QStringList required{u"id"_s};
    return {
        {u"new"_s, u"NAME --id ID [--language LANGUAGE]"_s, 1, 1, u"Make an empty project."_s,
         with({language}), required, addNew},
        {u"copy"_s, u"SOURCE NAME --id ID [--language LANGUAGE]"_s, 2, 2,
         u"Make a project as a copy of a released set."_s, with({language}), required, copy},
        {u"merge"_s, u"NAME --id ID SOURCE SOURCE..."_s, 3, -1,
         u"Combine projects into a new one."_s, with({}), required, merge},
        {u"migrate"_s, u"DATABASE NAME --id ID [--language LANGUAGE] [--accept-partly]"_s, 2, 2,
         u"Make a project from a legacy book set."_s, with({language, partly}), required, migrate},
    };
}
