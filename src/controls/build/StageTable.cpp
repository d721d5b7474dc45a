#include "controls/build/StageTable.h"

#include "controls/parts/Handler.h"
#include "controls/parts/Tables.h"
#include "platform/FileSystem.h"
#include "platform/Paths.h"
#include "platform/Processes.h"
#include "resources/Icons.h"
#include "resources/PlainTip.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QProgressBar>
#include <QPushButton>
#include <QTreeWidget>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

enum Column { NameColumn, StateColumn, ResultColumn };

constexpr int whole = 1000; // thousandths

/// Of a part's log, below the project folder; "" when it writes none.
QString logOf(BuildStage stage, const QString &project)
{
    switch (stage) {
    case BuildStage::Pages:
        return {};
    case BuildStage::DocToDoc:
        return u"DocToDoc_Log.txt"_s;
    case BuildStage::ContextSettings:
        return u"DynamicHelp\\ContextSettings_Log.txt"_s;
    case BuildStage::QuickNav:
        return u"QuickNav\\QuickNav_Log.txt"_s;
    case BuildStage::SearchIndex:
        return ProjectFile::searchWordsFolder + u"\\SearchWords_Log.txt"_s;
    case BuildStage::Checks:
        return project + u"_QA_Log.txt"_s;
    }
    return {};
}

QList<BuildStage> stagesOf(const BuildOrder &order)
{
    QList<BuildStage> stages{BuildStage::Pages};
    const auto add = [&](BuildTool tool, BuildStage stage) {
        if (order.tools.contains(tool))
            stages.append(stage);
    };
    add(BuildTool::DocToDoc, BuildStage::DocToDoc);
    add(BuildTool::ContextSettings, BuildStage::ContextSettings);
    add(BuildTool::QuickNav, BuildStage::QuickNav);
    add(BuildTool::SearchIndex, BuildStage::SearchIndex);
    if (order.checks != CheckLevel::Off)
        stages.append(BuildStage::Checks);
    return stages;
}

} // namespace

StageTable::StageTable(Program &program, QWidget *parent)
    : QWidget(parent)
    , m_program(program)
    , lstStages(makeTable(u"lstStages"_s, tr("Parts of the build"),
                          {tr("Part"), tr("State"), tr("Result")}, ResultColumn, this))
    , cmdOpenLog(makeButton(u"cmdOpenLog"_s, {}, tr("&Open log"), this))
{
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins({});
    row->addWidget(lstStages, 1);
    row->addWidget(cmdOpenLog, 0, Qt::AlignTop);
    lstStages->header()->setSectionResizeMode(StateColumn, QHeaderView::Interactive);
    lstStages->header()->resizeSection(StateColumn, 28 * fontMetrics().averageCharWidth());
    lstStages->setTextElideMode(Qt::ElideRight);
    lstStages->setTabKeyNavigation(false);
    connect(lstStages, &QTreeWidget::currentItemChanged, this, &StageTable::offerLog);
    connect(lstStages, &QTreeWidget::itemActivated, this, &StageTable::openLog);
    connect(cmdOpenLog, &QPushButton::clicked, this, &StageTable::openLog);
}

void StageTable::begin(const BuiltProject &project, const BuildOrder &order)
{
    m_project = project;
    m_rows.clear();
    lstStages->clear();
    m_running = nullptr;
    m_bar = nullptr;
    m_place = -1;
    for (const BuildStage stage : stagesOf(order))
        addStage(stage);
    // All parts and the head are seen without scrolling.
    lstStages->setFixedHeight(lstStages->header()->sizeHint().height()
                              + count() * (fontMetrics().height() + 4)
                              + 2 * lstStages->frameWidth());
    offerLog();
}

void StageTable::addStage(BuildStage stage)
{
    QTreeWidgetItem *row = addRow(lstStages, {nameOf(stage), {}, {}}, {});
    row->setData(NameColumn, Qt::UserRole, static_cast<int>(stage));
    setState(row, tr("Waiting"), {});
    m_rows[stage] = row;
}

void StageTable::setState(QTreeWidgetItem *row, const QString &state, QLatin1StringView picture)
{
    row->setText(StateColumn, state);
    row->setIcon(StateColumn, icon(picture));
    row->setData(NameColumn, Qt::AccessibleTextRole,
                 row->text(NameColumn) + u": "_s + state + u". "_s + row->text(ResultColumn));
}

void StageTable::beginStage(BuildStage stage)
{
    ++m_place;
    m_running = m_rows.at(stage);
    setState(m_running, tr("Running"), {});
    m_bar = new QProgressBar(lstStages);
    m_bar->setRange(0, whole);
    m_bar->setAccessibleName(nameOf(stage));
    lstStages->setItemWidget(m_running, StateColumn, m_bar);
}

void StageTable::showProgress(int thousandths)
{
    if (m_bar != nullptr)
        m_bar->setValue(std::clamp(thousandths, 0, whole));
}

void StageTable::endStage(BuildStage stage, const ToolReport &report)
{
    QTreeWidgetItem *const row = m_rows.at(stage);
    lstStages->removeItemWidget(row, StateColumn);
    m_bar = nullptr;
    m_running = nullptr;
    row->setText(ResultColumn, report.summary);
    row->setToolTip(ResultColumn, plainTip(report.summary));
    switch (report.outcome) {
    case ToolReport::Outcome::Good:
        setState(row, tr("Good"), "ok"_L1);
        break;
    case ToolReport::Outcome::Warnings:
        setState(row, tr("Finished with warnings"), "warning"_L1);
        break;
    case ToolReport::Outcome::Failed:
        setState(row, tr("Failed"), "error"_L1);
        break;
    }
    offerLog();
}

void StageTable::end()
{
    if (m_running != nullptr) {
        lstStages->removeItemWidget(m_running, StateColumn);
        m_bar = nullptr;
        setState(m_running, tr("Stopped"), "stop"_L1);
    }
    for (const auto &[stage, row] : m_rows) {
        if (row->text(StateColumn) == tr("Waiting"))
            setState(row, tr("Not run"), {});
    }
    m_running = nullptr;
    if (lstStages->currentItem() == nullptr) // the first that has a log
        lstStages->setCurrentItem(lstStages->topLevelItem(1));
}

QString StageTable::logPath() const
{
    const QTreeWidgetItem *const row = lstStages->currentItem();
    if (row == nullptr)
        return {};
    const auto stage = static_cast<BuildStage>(row->data(NameColumn, Qt::UserRole).toInt());
    const QString log = logOf(stage, m_project.name());
    return log.isEmpty() ? QString() : m_project.folder() + log;
}

void StageTable::offerLog()
{
    const QString path = logPath();
    const bool isThere =
        !path.isEmpty() && handled(m_program, [&] { return m_program.files.fileExists(path); });
    cmdOpenLog->setEnabled(isThere);
    cmdOpenLog->setToolTip(isThere          ? QString()
                           : path.isEmpty() ? tr("Choose a tool to see its log")
                                            : tr("It has written no log yet"));
}

void StageTable::openLog()
{
    const QString path = logPath();
    handled(m_program, [&] {
        if (!path.isEmpty() && m_program.files.fileExists(path))
            m_program.processes.openText(path);
    });
}
