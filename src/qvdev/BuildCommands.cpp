// Building, checking and packing.
#include "controls/build/ProjectBuild.h"
#include "platform/QvError.h"
#include "qvdev/Command.h"
#include "qvdev/ConsoleWorld.h"
#include "tools/checks/FindingKinds.h"

#include <QCommandLineParser>
#include <QEventLoop>
#include <QThread>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

struct StageResult
{
    BuildStage stage;
    ToolReport report;
};

struct Outcome
{
    QList<StageResult> stages;
    BuildEnd end;
};

/// The build window's build without the window: the same class sets the lights.
Outcome run(ConsoleWorld &world, const BuiltProject &project, const BuildOrder &order)
{
    Outcome outcome;
    QEventLoop loop;
    ProjectBuild build(world.program);
    QObject::connect(&build, &ProjectBuild::stageEnded, &loop,
                     [&](BuildStage stage, const ToolReport &report) {
                         outcome.stages.append({stage, report});
                     });
    QObject::connect(&build, &ProjectBuild::progressed, &loop,
                     [&](int done, int total, const QString &what) {
                         world.progressLine.show(done, total, what);
                     });
    QObject::connect(&build, &ProjectBuild::ended, &loop, [&](const BuildEnd &end) {
        outcome.end = end;
        loop.quit();
    });
    const std::stop_callback onStop(world.stopSignals.token(), [&build] {
        QMetaObject::invokeMethod(
            &build, [&build] { build.stop(); }, Qt::QueuedConnection);
    });
    build.start(project, order);
    loop.exec();
    return outcome;
}

bool isFinding(const ToolReport &report)
{
    const auto isWorse = [](const Finding &finding) { return finding.severity != Severity::Note; };
    return report.outcome == ToolReport::Outcome::Warnings
           || std::any_of(report.findings.cbegin(), report.findings.cend(), isWorse);
}

ExitStatus statusOf(const Outcome &outcome)
{
    const auto hasFailed = [](const StageResult &stage) {
        return stage.report.outcome == ToolReport::Outcome::Failed;
    };
    const BuildEnd &end = outcome.end;
    if (end.stopped || end.outdated || !end.problem.isEmpty()
        || std::any_of(outcome.stages.cbegin(), outcome.stages.cend(), hasFailed))
        return Refused;
    const bool found =
        std::any_of(outcome.stages.cbegin(), outcome.stages.cend(),
                    [](const StageResult &stage) { return isFinding(stage.report); });
    return found ? Findings : Done;
}

QJsonObject jsonOf(const Finding &finding)
{
    return {{"code"_L1, finding.code},
            {"severity"_L1, tagOf(finding.severity)},
            {"file"_L1, finding.file},
            {"line"_L1, finding.line},
            {"text"_L1, finding.text}};
}

QJsonArray jsonOf(const QList<Finding> &findings)
{
    QJsonArray all;
    for (const Finding &finding : findings)
        all.append(jsonOf(finding));
    return all;
}

QJsonArray jsonOf(const QList<StageResult> &stages)
{
    static constexpr std::array stageTags{"pages"_L1,    "links"_L1, "context"_L1,
                                          "quicknav"_L1, "words"_L1, "checks"_L1};
    static constexpr std::array outcomes{"good"_L1, "warnings"_L1, "failed"_L1};
    QJsonArray all;
    for (const auto &[stage, report] : stages) {
        all.append(QJsonObject{{"stage"_L1, stageTags.at(static_cast<size_t>(stage))},
                               {"outcome"_L1, outcomes.at(static_cast<size_t>(report.outcome))},
                               {"summary"_L1, report.summary},
                               {"findings"_L1, jsonOf(report.findings)}});
    }
    return all;
}

QStringList linesOf(const QList<StageResult> &stages)
{
    QStringList lines;
    for (const auto &[stage, report] : stages) {
        for (const Finding &finding : report.findings)
            lines.append(logLine(finding));
        lines.append(nameOf(stage) + u": "_s + report.summary);
    }
    return lines;
}

/// `said`: how the run ended, in a sentence; "" where the summaries say all.
ExitStatus show(ConsoleWorld &world, const BuiltProject &project, const Outcome &outcome,
                const QString &said)
{
    QStringList lines = linesOf(outcome.stages);
    const ExitStatus status = statusOf(outcome);
    if (status == Refused)
        world.messages.print(said);
    else if (!said.isEmpty())
        lines.append(said);
    world.output.result(world.messages.paths().in(lines.join(u'\n')),
                        {{"project"_L1, project.name()},
                         {"success"_L1, status != Refused},
                         {"end"_L1, world.messages.paths().in(said)},
                         {"stages"_L1, jsonOf(outcome.stages)}});
    return status;
}

constexpr std::array toolNames{"links"_L1, "context"_L1, "quicknav"_L1, "words"_L1};

BuildTool toolNamed(const QString &name)
{
    const auto found = std::find(toolNames.begin(), toolNames.end(), name);
    if (found == toolNames.end())
        throw QvError(
            InvalidCall, {},
            u"There is no tool \"%1\". The tools are links, context, quicknav and words"_s.arg(
                name));
    return allBuildTools.at(static_cast<size_t>(found - toolNames.begin()));
}

BuildOrder orderOf(const Call &call)
{
    BuildOrder order;
    for (const QString &name : call.options.values(u"tool"_s))
        order.tools.append(toolNamed(name));
    if (order.tools.isEmpty())
        order.tools = QList<BuildTool>(allBuildTools.begin(), allBuildTools.end());
    if (call.options.isSet(u"no-checks"_s))
        order.checks = CheckLevel::Off;
    order.everything = call.options.isSet(u"rebuild"_s);
    order.threads = QThread::idealThreadCount();
    return order;
}

BuiltProject projectOf(ConsoleWorld &world, const Call &call)
{
    const CatalogueEntry entry = world.project(call.arguments.first());
    return {world.program, entry.name, entry.language};
}

ExitStatus build(ConsoleWorld &world, const Call &call)
{
    const BuildOrder order = orderOf(call);
    const BuiltProject project = projectOf(world, call);
    if (!project.released(world.files).isEmpty())
        throw QvError(
            InvalidCall, {},
            u"The project \"%1\" is released. Reopen it to build it"_s.arg(project.name()));
    const Outcome outcome = run(world, project, order);
    return show(world, project, outcome, worded(outcome.end));
}

CheckLevel levelOf(const Call &call)
{
    const QString level = call.options.value(u"level"_s);
    if (level == "links"_L1)
        return CheckLevel::Links;
    if (!level.isEmpty() && level != "everything"_L1)
        throw QvError(InvalidCall, {}, u"--level is \"links\" or \"everything\""_s);
    return CheckLevel::Everything;
}

ExitStatus check(ConsoleWorld &world, const Call &call)
{
    const BuildOrder order{
        .tools = {}, .checks = levelOf(call), .threads = QThread::idealThreadCount()};
    const BuiltProject project = projectOf(world, call);
    const Outcome outcome = run(world, project, order);
    const BuildEnd &end = outcome.end;
    const bool isWhole = !end.stopped && !end.outdated && end.problem.isEmpty();
    const QString failed =
        statusOf(outcome) == Refused ? u"The checks could not be made."_s : QString();
    return show(world, project, outcome, isWhole ? failed : worded(end));
}

ExitStatus showPacked(ConsoleWorld &world, const BuiltProject &project, const PackResult &result,
                      const QList<Finding> &warnings)
{
    const QString path = world.files.nativePath(result.path);
    const bool isReleased = !project.released(world.files).isEmpty();
    QStringList lines;
    for (const Finding &warning : warnings)
        lines.append(logLine(warning));
    lines.append(u"Files packed: %1. The packed copy is %2, %3 bytes."_s.arg(
        QString::number(result.count), path, QString::number(result.packedBytes)));
    if (isReleased)
        lines.append(u"The set is released."_s);
    world.output.result(lines.join(u'\n'), {{"project"_L1, project.name()},
                                            {"path"_L1, path},
                                            {"files"_L1, result.count},
                                            {"bytes"_L1, result.packedBytes},
                                            {"released"_L1, isReleased},
                                            {"warnings"_L1, jsonOf(warnings)}});
    return warnings.isEmpty() ? Done : Findings;
}

ExitStatus pack(ConsoleWorld &world, const Call &call)
{
    const BuiltProject project = projectOf(world, call);
    const PackOptions options{.withSources = call.options.isSet(u"with-sources"_s),
                              .threads = QThread::idealThreadCount()};
    const bool toRelease = call.options.isSet(u"release"_s);
    if (toRelease)
        world.requireBuilt(project);
    const QList<Finding> warnings =
        project.planPack(world.files, options, world.progress()).warnings;
    const PackResult result = project.pack(world.files, options, world.progress());
    if (toRelease)
        project.release(world.program);
    return showPacked(world, project, result, warnings);
}

} // namespace

QList<Command> buildCommands()
{
    return {
        {u"check"_s,
         u"PROJECT [--level LEVEL]"_s,
         1,
         1,
         u"Run the quality checks."_s,
         {{u"level"_s, u"\"links\" or \"everything\" (if it is not given)."_s, u"LEVEL"_s}},
         {},
         check},
        {u"build"_s,
         u"PROJECT [--tool TOOL]... [--rebuild] [--no-checks]"_s,
         1,
         1,
         u"Make the derived data of a project."_s,
         {{u"tool"_s, u"Run this one, not all: links, context, quicknav or words."_s, u"TOOL"_s},
          {u"rebuild"_s, u"Read all pages again, whatever is known of them."_s},
          {u"no-checks"_s, u"Leave the quality checks out."_s}},
         {},
         build},
        {u"pack"_s,
         u"PROJECT [--with-sources] [--release]"_s,
         1,
         1,
         u"Pack the project for the server."_s,
         {{u"with-sources"_s, u"Also the files that pages were made from."_s},
          {u"release"_s, u"Release the set when it is packed."_s}},
         {},
         pack},
    };
}
