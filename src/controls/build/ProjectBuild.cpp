#include "controls/build/ProjectBuild.h"

#include <optional>

namespace {

std::optional<BuildTool> toolOf(BuildStage stage)
{
    switch (stage) {
    case BuildStage::DocToDoc:
        return BuildTool::DocToDoc;
    case BuildStage::ContextSettings:
        return BuildTool::ContextSettings;
    case BuildStage::QuickNav:
        return BuildTool::QuickNav;
    case BuildStage::SearchIndex:
        return BuildTool::SearchIndex;
    case BuildStage::Pages:
    case BuildStage::Checks:
        break;
    }
    return std::nullopt;
}

} // namespace

QString worded(const BuildEnd &end)
{
    if (end.stopped)
        return ProjectBuild::tr("Stopped. What had run to its end is done; the rest is as it was.");
    if (end.outdated)
        return ProjectBuild::tr("The project was edited while it was built, so the derived data "
                                "may not show it. Build it again.");
    if (!end.problem.isEmpty())
        return end.problem;
    if (end.success)
        return ProjectBuild::tr("The build is done.");
    return ProjectBuild::tr(
        "The build is not complete: a tool failed, or another one still must run.");
}

ProjectBuild::ProjectBuild(Program &program, QObject *parent)
    : QObject(parent)
    , m_program(program)
    , m_work(program.ending)
{
    connect(&m_work, &BackgroundWork::progressed, this, &ProjectBuild::progressed);
    connect(&m_work, &BackgroundWork::ended, this, &ProjectBuild::end);
}

void ProjectBuild::start(const BuiltProject &project, const BuildOrder &order)
{
    m_work.giveUp();
    m_project = project;
    m_success = m_outdated = false;
    m_lightProblem.clear();
    m_work.start([this, order](const Progress &progress) { build(order, progress); });
}

void ProjectBuild::noteChange()
{
    m_outdated = m_outdated || isRunning();
}

// On the worker. Nobody changes the project until the work has ended.
void ProjectBuild::build(const BuildOrder &order, const Progress &progress)
{
    const auto begins = [this](BuildStage stage) {
        m_work.tell([this, stage] { Q_EMIT stageBegan(stage); });
    };
    const auto ends = [this](BuildStage stage, const ToolReport &report) {
        m_work.tell([this, stage, report] { noteStage(stage, report); });
    };
    const auto outdated = [this] { m_work.tell([this] { m_outdated = true; }); };
    Session session = m_project.session();
    const BuildResult result =
        runBuild(session, m_program.files, m_project.name(), m_project.language(m_program.files),
                 order, {begins, ends, outdated}, progress);
    m_work.tell([this, success = result.success] { m_success = success; });
}

void ProjectBuild::noteStage(BuildStage stage, const ToolReport &report)
{
    const auto tool = toolOf(stage);
    if (tool && !m_outdated) {
        trap([this](const QvError &error) { cannotSetLights(error); },
             [&] { m_project.setLight(m_program, *tool, lightOf(report.outcome)); });
    }
    Q_EMIT stageEnded(stage, report);
}

void ProjectBuild::cannotSetLights(const QvError &error)
{
    m_lightProblem = tr("The lights do not show this build, for they cannot be noted: %1")
                         .arg(error.description());
}

void ProjectBuild::end(bool stopped, const QString &problem)
{
    BuildEnd end{.stopped = stopped, .outdated = m_outdated, .problem = problem};
    trap([this](const QvError &error) { cannotSetLights(error); },
         [this] {
             if (m_outdated)
                 m_project.setAllLights(m_program, Light::mustRun);
         });
    if (end.problem.isEmpty())
        end.problem = m_lightProblem;
    end.success = m_success && !m_outdated && m_project.isBuilt(m_program);
    Q_EMIT ended(end);
}
