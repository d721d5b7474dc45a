#pragma once

#include "controls/build/BackgroundWork.h"
#include "controls/build/BuiltProject.h"
#include "tools/build/BuildRun.h"

#include <QWidget>

class QCheckBox;
class QComboBox;
class QGridLayout;
class QLabel;
class StatusLight;

/// The first step of a build, what to do: how each tool's data stand and why it should run, with
/// ticks for what is stale. The lights show at once; the reasons are worked out in the background.
class BuildChoice final : public QWidget
{
    Q_OBJECT

public:
    explicit BuildChoice(Program &program, QWidget *parent = nullptr);

    /// Another project, or the same one again: what the author ticked before is forgotten.
    void setProject(const BuiltProject &project);
    /// Shows the lights anew, and in a moment the reasons.
    void refresh();
    [[nodiscard]] BuildOrder order() const;

protected:
    void showEvent(QShowEvent *event) override;

private:
    struct Row
    {
        QCheckBox *run = nullptr;
        StatusLight *light = nullptr;
        QLabel *lastRun = nullptr;
        QLabel *why = nullptr;
        bool isTouched = false; ///< by the author; what he ticked is left to him
    };
    struct Planned
    {
        BuildPlan plan;
        bool isOpenElsewhere = false;
    };

    void addRows(QGridLayout *grid);
    Row addRow(QGridLayout *grid, BuildTool tool, const QString &caption);
    QLayout *optionRow();
    void forgetPlan();
    void planLater();
    void plan();
    void workOut(const BuiltProject &project, const Progress &progress);
    void sayProblems(const QString &problem);
    void showPlanned(const Planned &planned);
    void endPlanning(const QString &problem);
    void showReasons(Row &row, const ToolState &state);
    void showLights();
    void preset(Row &row, bool isStale);
    void rebuildAll(bool all);

    Program &m_program;
    BuiltProject m_project;
    std::array<Row, 4> m_rows; ///< in the order of `BuildTool`
    QCheckBox *chkRebuildAll;
    QComboBox *cboChecks;
    QLabel *lblProblem;
    QLabel *lblOpenElsewhere;
    std::array<bool, 4> m_stale{};
    QString m_statusProblem;
    bool m_isPlanned = false;
    QTimer m_later;            ///< collects edits that come close together
    BackgroundWork m_planning; ///< last: it uses the rest
};
