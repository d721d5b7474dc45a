#pragma once

#include "controls/build/BackgroundWork.h"
#include "controls/build/BuiltProject.h"
#include "platform/QvError.h"
#include "tools/build/BuildRun.h"

/// How a build ended.
struct BuildEnd
{
    bool success = false;  ///< nothing failed, and all derived data are as they should be
    bool stopped = false;  ///< by the author
    bool outdated = false; ///< the project was edited meanwhile
    QString problem = {};  ///< why it ended early, or what could not be noted
};
/// The same in a sentence or two.
QString worded(const BuildEnd &end);

/// Builds a project in the background and keeps the lights of its status file in step: each tool's
/// is set when it has run.
class ProjectBuild final : public QObject
{
    Q_OBJECT

public:
    explicit ProjectBuild(Program &program, QObject *parent = nullptr);

    void start(const BuiltProject &project, const BuildOrder &order);
    void stop() { m_work.stop(); }
    void finish() { m_work.finish(); } ///< stops and waits; `ended` has been heard then
    [[nodiscard]] bool isRunning() const { return m_work.isRunning(); }
    /// The project was edited: what is being built will not show it.
    void noteChange();

Q_SIGNALS:
    void stageBegan(BuildStage stage);
    void stageEnded(BuildStage stage, const ToolReport &report);
    void progressed(int done, int total, const QString &what);
    void ended(const BuildEnd &end);

private:
    void build(const BuildOrder &order, const Progress &progress);
    void noteStage(BuildStage stage, const ToolReport &report);
    void cannotSetLights(const QvError &error);
    void end(bool stopped, const QString &problem);

    Program &m_program;
    BuiltProject m_project;
    BackgroundWork m_work;
    bool m_success = false;
    bool m_outdated = false;
    QString m_lightProblem;
};
