#include "controls/build/BuildChoice.h"

#include "controls/parts/PlainLabel.h"
#include "controls/parts/StatusLight.h"
#include "controls/parts/Tables.h"
#include "platform/Progress.h"
#include "platform/SystemLocale.h"
#include "projectfiles/OpenMark.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QThread>

#include <algorithm>
#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

enum Column { RunColumn, LightColumn, LastRunColumn, WhyColumn };

/// Shorter times show the author nothing, and each takes a look at all files of the project.
constexpr auto betweenPlans = 400ms;

bool asksToRun(std::optional<qint64> light)
{
    return !light || *light == Light::mustRun || *light == Light::failed;
}

QString shownTime(SystemLocale &locale, const QDateTime &time)
{
    const QDateTime here = time.toLocalTime();
    return locale.shortDate(here.date()) + here.toString(u" HH:mm"_s);
}

} // namespace

BuildChoice::BuildChoice(Program &program, QWidget *parent)
    : QWidget(parent)
    , m_program(program)
    , chkRebuildAll(new QCheckBox(tr("&Rebuild all, whatever is known"), this))
    , cboChecks(new QComboBox(this))
    , lblProblem(makeProblemLabel(u"lblProblem"_s, this))
    , lblOpenElsewhere(makeProblemLabel(u"lblOpenElsewhere"_s, this))
    , m_planning(program.ending)
{
    auto *grid = new QGridLayout(this);
    grid->setContentsMargins({});
    QLabel *advice =
        plainLabel(tr("What is out of date is ticked. Next runs what is ticked and the "
                      "quality checks; without either, it goes straight to packing."),
                   this);
    advice->setContentsMargins(0, 0, 0, fontMetrics().height());
    grid->addWidget(advice, 0, 0, 1, -1);
    addRows(grid);
    const int below = grid->rowCount();
    grid->addLayout(optionRow(), below, 0, 1, -1);
    grid->addWidget(lblProblem, below + 1, 0, 1, -1);
    grid->addWidget(lblOpenElsewhere, below + 2, 0, 1, -1);
    grid->setRowStretch(below + 3, 1);
    grid->setColumnStretch(WhyColumn, 1);
    grid->setHorizontalSpacing(2 * fontMetrics().averageCharWidth());

    connect(chkRebuildAll, &QCheckBox::toggled, this, &BuildChoice::rebuildAll);
    m_later.setSingleShot(true);
    m_later.setInterval(betweenPlans);
    connect(&m_later, &QTimer::timeout, this, &BuildChoice::plan);
    connect(&m_planning, &BackgroundWork::ended, this,
            [this](bool, const QString &problem) { endPlanning(problem); });
}

void BuildChoice::addRows(QGridLayout *grid)
{
    const int top = grid->rowCount();
    const auto addHead = [&](int column, const QString &text) {
        QLabel *head = plainLabel(text, this);
        head->setWordWrap(false);
        QFont font = head->font();
        font.setBold(true);
        head->setFont(font);
        grid->addWidget(head, top, column);
    };
    addHead(RunColumn, tr("Run"));
    addHead(LightColumn, tr("State"));
    addHead(LastRunColumn, tr("Last run"));
    addHead(WhyColumn, tr("Why"));
    m_rows = {addRow(grid, BuildTool::DocToDoc, tr("&Document to document links")),
              addRow(grid, BuildTool::ContextSettings, tr("Conte&xt settings")),
              addRow(grid, BuildTool::QuickNav, tr("&Quick navigation")),
              addRow(grid, BuildTool::SearchIndex, tr("&Search words"))};
    for (Row &row : m_rows)
        connect(row.run, &QCheckBox::clicked, this, [&row] { row.isTouched = true; });
    for (QWidget *const option : std::initializer_list<QWidget *>{cboChecks, chkRebuildAll})
        setTabOrder(m_rows.back().run, option);
}

BuildChoice::Row BuildChoice::addRow(QGridLayout *grid, BuildTool tool, const QString &caption)
{
    const QString name = elementOf(tool);
    Row row{new QCheckBox(caption, this), new StatusLight(nameOf(tool), this), plainLabel({}, this),
            plainLabel({}, this)};
    row.run->setObjectName(u"chk"_s + name);
    row.light->setObjectName(name);
    row.lastRun->setObjectName(u"lblLastRun"_s + name);
    row.lastRun->setWordWrap(false);
    row.why->setObjectName(u"lblWhy"_s + name);
    // The first lines of all four stand at one height.
    const int height = row.run->sizeHint().height();
    const int margin = (height - fontMetrics().height()) / 2;
    row.light->setFixedHeight(height);
    for (QLabel *const label : {row.lastRun, row.why})
        label->setContentsMargins(0, margin, 0, 0);
    const int at = grid->rowCount();
    grid->addWidget(row.run, at, RunColumn, Qt::AlignTop);
    grid->addWidget(row.light, at, LightColumn, Qt::AlignTop);
    grid->addWidget(row.lastRun, at, LastRunColumn, Qt::AlignTop);
    grid->addWidget(row.why, at, WhyColumn, Qt::AlignTop);
    return row;
}

QLayout *BuildChoice::optionRow()
{
    chkRebuildAll->setObjectName(u"chkRebuildAll"_s);
    chkRebuildAll->setToolTip(
        tr("Reads all pages again and makes all derived data anew. Takes longer."));
    cboChecks->setObjectName(u"cboChecks"_s);
    cboChecks->addItem(tr("None"), static_cast<int>(CheckLevel::Off));
    cboChecks->addItem(tr("Links and books"), static_cast<int>(CheckLevel::Links));
    cboChecks->addItem(tr("Everything"), static_cast<int>(CheckLevel::Everything));
    cboChecks->setCurrentIndex(cboChecks->count() - 1);
    auto *checks = new QLabel(tr("Quality c&hecks:"), this);
    checks->setBuddy(cboChecks);
    auto *row = new QHBoxLayout;
    row->setContentsMargins(0, fontMetrics().height(), 0, 0);
    row->setSpacing(fontMetrics().averageCharWidth());
    row->addWidget(chkRebuildAll);
    row->addSpacing(fontMetrics().height());
    row->addWidget(checks);
    row->addWidget(cboChecks);
    row->addStretch();
    return row;
}

void BuildChoice::setProject(const BuiltProject &project)
{
    m_project = project;
    for (Row &row : m_rows)
        row.isTouched = false;
    chkRebuildAll->setChecked(false);
    forgetPlan();
    refresh();
}

void BuildChoice::forgetPlan()
{
    m_planning.giveUp();
    sayProblem(lblProblem, {});
    sayProblem(lblOpenElsewhere, {});
    for (const Row &row : m_rows) {
        row.lastRun->clear();
        row.why->setText(m_project.isNone() ? QString() : tr("Looking..."));
    }
}

void BuildChoice::refresh()
{
    m_isPlanned = false;
    showLights();
    if (isVisible())
        planLater();
}

void BuildChoice::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (!m_isPlanned)
        plan();
}

void BuildChoice::planLater()
{
    if (!m_later.isActive())
        m_later.start();
}

void BuildChoice::plan()
{
    m_later.stop();
    if (m_project.isNone() || !isVisible())
        return;
    m_isPlanned = true;
    m_planning.start(
        [this, project = m_project](const Progress &progress) { workOut(project, progress); });
}

// On the worker.
void BuildChoice::workOut(const BuiltProject &project, const Progress &progress)
{
    Session session = project.session();
    const auto lights = project.lights(m_program).value_or(BuiltProject::Lights{});
    const BuildInput input = readBuildInput(session, m_program.files, project.name(),
                                            project.language(m_program.files), progress);
    const auto listing = ProjectListing::read(m_program.files, input.folder, progress);
    const Planned planned{planBuild(input, listing, lights),
                          countOpen(m_program.files, input.folder) > 1};
    m_planning.tell([this, planned] { showPlanned(planned); });
}

void BuildChoice::endPlanning(const QString &problem)
{
    sayProblems(problem);
    if (problem.isEmpty())
        return;
    for (const Row &row : m_rows) { // nobody knows
        row.lastRun->clear();
        row.why->clear();
    }
}

void BuildChoice::showPlanned(const Planned &planned)
{
    for (const BuildTool tool : allBuildTools)
        showReasons(m_rows[static_cast<size_t>(tool)], planned.plan.of(tool));
    sayProblem(lblOpenElsewhere,
               planned.isOpenElsewhere
                   ? tr("Another author has this project open. What they have not saved yet "
                        "is not built, and what they change meanwhile may be missed.")
                   : QString());
}

void BuildChoice::showReasons(Row &row, const ToolState &state)
{
    row.lastRun->setText(state.lastRun.isValid() ? shownTime(m_program.locale, state.lastRun)
                                                 : tr("Never"));
    row.why->setText(state.isStale() ? state.reasons.join(u'\n') : tr("Nothing changed since."));
    row.run->setAccessibleDescription(row.light->word() + u". "_s + state.reasons.join(u' '));
    preset(row, state.isStale());
}

void BuildChoice::showLights()
{
    const auto stored = m_project.lights(m_program);
    const bool isOpen = !m_project.isNone();
    for (size_t i = 0; i < m_rows.size(); ++i) {
        const auto light = stored ? stored->at(i) : std::nullopt;
        m_rows[i].light->setColour(light);
        preset(m_rows[i], isOpen && asksToRun(light));
    }
    const bool isMissing = isOpen && !stored;
    m_statusProblem = isMissing ? tr("The status file of this project is missing or cannot be "
                                     "read. A build makes a new one.")
                                : QString();
    sayProblems({});
    setEnabled(isOpen);
}

void BuildChoice::sayProblems(const QString &problem)
{
    sayProblem(lblProblem, problem.isEmpty() ? m_statusProblem : problem);
}

void BuildChoice::preset(Row &row, bool isStale)
{
    m_stale[static_cast<size_t>(&row - m_rows.data())] = isStale;
    if (!row.isTouched && !chkRebuildAll->isChecked())
        row.run->setChecked(isStale);
}

void BuildChoice::rebuildAll(bool all)
{
    for (size_t i = 0; i < m_rows.size(); ++i) {
        m_rows[i].run->setChecked(all || m_stale[i]);
        m_rows[i].run->setEnabled(!all);
    }
}

BuildOrder BuildChoice::order() const
{
    BuildOrder order;
    for (const BuildTool tool : allBuildTools) {
        if (m_rows[static_cast<size_t>(tool)].run->isChecked())
            order.tools.append(tool);
    }
    order.checks = static_cast<CheckLevel>(cboChecks->currentData().toInt());
    order.everything = chkRebuildAll->isChecked();
    order.threads = std::clamp(QThread::idealThreadCount(), 1, 8);
    return order;
}
