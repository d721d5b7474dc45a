#pragma once

#include "controls/build/BuiltProject.h"
#include "tools/build/BuildRun.h"

#include <QWidget>

#include <map>

class QProgressBar;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

/// The parts of a build, one row each: waiting, how far it is, how it ended and with what; and
/// their logs.
class StageTable final : public QWidget
{
    Q_OBJECT

public:
    explicit StageTable(Program &program, QWidget *parent = nullptr);

    /// Lists what will run.
    void begin(const BuiltProject &project, const BuildOrder &order);
    void beginStage(BuildStage stage);
    /// The part at work and how much of it is done, in thousandths.
    void showProgress(int thousandths);
    void endStage(BuildStage stage, const ToolReport &report);
    /// The build is over: what did not come to its end says so.
    void end();
    /// The place of the part at work among all of them.
    [[nodiscard]] int place() const { return m_place; }
    [[nodiscard]] int count() const { return static_cast<int>(m_rows.size()); }

private:
    void addStage(BuildStage stage);
    void setState(QTreeWidgetItem *row, const QString &state, QLatin1StringView picture);
    void offerLog();
    void openLog();
    [[nodiscard]] QString logPath() const;

    Program &m_program;
    BuiltProject m_project;
    QTreeWidget *lstStages;
    QPushButton *cmdOpenLog;
    std::map<BuildStage, QTreeWidgetItem *> m_rows;
    QTreeWidgetItem *m_running = nullptr;
    QProgressBar *m_bar = nullptr; ///< of the part at work
    int m_place = -1;
};
