#include "controls/build/BuildRunPage.h"

#include "controls/build/BuildLog.h"
#include "controls/build/FindingsView.h"
#include "controls/build/PackPane.h"
#include "controls/build/SearchPane.h"
#include "controls/build/StageTable.h"
#include "controls/parts/PlainLabel.h"
#include "controls/parts/Tables.h"
#include "platform/Clock.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>

using namespace Qt::StringLiterals;

namespace {

constexpr int whole = 1000; // thousandths of a part of the build

QString shown(std::chrono::milliseconds time)
{
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time).count();
    return u"%1:%2"_s.arg(seconds / 60).arg(static_cast<int>(seconds % 60), 2, 10, QChar(u'0'));
}

} // namespace

BuildRunPage::BuildRunPage(Program &program, QWidget *parent)
    : QWidget(parent)
    , m_program(program)
    , lblOutcome(plainLabel({}, this))
    , m_stages(new StageTable(program, this))
    , prgOverall(new QProgressBar(this))
    , cmdStop(makeButton(u"cmdStop"_s, "stop"_L1, tr("S&top"), this))
    , lblWhat(new QLabel(this))
    , lblCounts(new QLabel(this))
    , lblElapsed(new QLabel(this))
    , tabResults(new QTabWidget(this))
    , m_log(new BuildLog(tabResults))
    , m_findings(new FindingsView(program, tabResults))
    , m_pack(new PackPane(program, tabResults))
    , m_search(new SearchPane(program, tabResults))
    , m_build(new ProjectBuild(program, this))
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(lblOutcome);
    layout->addWidget(m_stages);
    layout->addLayout(progressRow());
    layout->addLayout(stateRow());
    layout->addWidget(tabResults, 1);
    lblOutcome->setObjectName(u"lblOutcome"_s);
    addTabs();
    connectBuild();
    tabResults->tabBar()->installEventFilter(this);
}

QLayout *BuildRunPage::progressRow()
{
    prgOverall->setObjectName(u"prgOverall"_s);
    prgOverall->setAccessibleName(tr("The whole build"));
    prgOverall->setRange(0, whole);
    connect(cmdStop, &QPushButton::clicked, this, &BuildRunPage::stop);
    auto *row = new QHBoxLayout;
    row->addWidget(prgOverall, 1);
    row->addWidget(cmdStop);
    return row;
}

QLayout *BuildRunPage::stateRow()
{
    lblWhat->setObjectName(u"lblWhat"_s);
    lblWhat->setTextFormat(Qt::PlainText);
    lblWhat->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    lblCounts->setObjectName(u"lblCounts"_s);
    lblElapsed->setObjectName(u"lblElapsed"_s);
    auto *row = new QHBoxLayout;
    row->addWidget(lblCounts);
    row->addWidget(lblWhat, 1);
    row->addWidget(lblElapsed);
    return row;
}

void BuildRunPage::addTabs()
{
    tabResults->setObjectName(u"tabResults"_s);
    tabResults->setAccessibleName(tr("What came out"));
    tabResults->addTab(m_log, tr("Runnin&g log"));
    tabResults->addTab(m_findings, tr("Findi&ngs"));
    tabResults->addTab(m_pack, tr("&Pack"));
    tabResults->addTab(m_search, tr("Tr&y a search"));
    connect(m_pack, &PackPane::busyChanged, this, &BuildRunPage::busyChanged);
    connect(m_findings, &FindingsView::opened, this, &BuildRunPage::placeRequested);
    connect(m_search, &SearchPane::pageRequested, this,
            [this](const QString &file) { Q_EMIT placeRequested(file, 0); });
}

void BuildRunPage::connectBuild()
{
    connect(m_build, &ProjectBuild::stageBegan, m_stages, &StageTable::beginStage);
    connect(m_build, &ProjectBuild::stageEnded, this,
            [this](BuildStage stage, const ToolReport &report) {
                m_stages->endStage(stage, report);
                m_log->add(nameOf(stage), report);
                lblCounts->setText(m_log->counts());
            });
    connect(m_build, &ProjectBuild::progressed, this, &BuildRunPage::showProgress);
    connect(m_build, &ProjectBuild::ended, this, &BuildRunPage::end);
}

// The letter of a tab takes the author into it, not only in front of it.
bool BuildRunPage::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Shortcut && !tabResults->isAncestorOf(window()->focusWidget()))
        QMetaObject::invokeMethod(this, &BuildRunPage::enterTab, Qt::QueuedConnection);
    return QWidget::eventFilter(watched, event);
}

void BuildRunPage::enterTab()
{
    tabResults->setFocus(Qt::TabFocusReason);
    focusNextChild();
}

void BuildRunPage::begin(const BuiltProject &project, const BuildOrder &order)
{
    m_project = project;
    m_log->begin();
    lblCounts->clear();
    const bool runs = !order.tools.isEmpty() || order.checks != CheckLevel::Off;
    m_stages->setVisible(runs);
    showRunning(runs);
    offerResults(!runs);
    if (runs) {
        run(order);
    } else {
        lblOutcome->setText(tr("Nothing was ticked, so nothing was built."));
        tabResults->setCurrentWidget(m_pack);
        tabResults->setFocus();
    }
}

void BuildRunPage::run(const BuildOrder &order)
{
    lblOutcome->setText(tr("Building %1...").arg(m_project.name()));
    lblCounts->setText(m_log->counts());
    tabResults->setCurrentWidget(m_log);
    m_stages->begin(m_project, order);
    m_begun = m_program.clock.monotonic();
    prgOverall->setValue(0);
    cmdStop->setEnabled(true);
    cmdStop->setFocus();
    m_build->start(m_project, order);
    Q_EMIT busyChanged();
}

void BuildRunPage::showRunning(bool running)
{
    lblWhat->clear();
    prgOverall->setVisible(running);
    cmdStop->setVisible(running);
}

/// What shows the derived data has nothing to show while they are made.
void BuildRunPage::offerResults(bool offered)
{
    const BuiltProject shown = offered ? m_project : BuiltProject();
    m_findings->setProject(shown.name());
    m_findings->refresh();
    m_pack->setProject(shown);
    m_search->setProject(shown);
    for (QWidget *const pane : std::initializer_list<QWidget *>{m_findings, m_pack, m_search})
        tabResults->setTabEnabled(tabResults->indexOf(pane), offered);
}

void BuildRunPage::stop()
{
    tabResults->setFocus(); // a disabled button would hand the focus to a neighbour
    cmdStop->setEnabled(false);
    lblOutcome->setText(tr("Stopping..."));
    m_build->stop();
}

void BuildRunPage::noteChange()
{
    m_build->noteChange();
    m_pack->noteChange();
}

bool BuildRunPage::isBusy() const
{
    return m_build->isRunning() || isPacking();
}

bool BuildRunPage::isPacking() const
{
    return m_pack->isPacking();
}

void BuildRunPage::finish()
{
    if (m_build->isRunning())
        m_build->finish();
    m_pack->finish();
}

// Between its parts a build counts otherwise; then only the file at hand is shown.
void BuildRunPage::showProgress(int done, int total, const QString &what)
{
    const int count = m_stages->count();
    if (total == count * whole) {
        prgOverall->setValue(done / count);
        m_stages->showProgress(done - m_stages->place() * whole);
    }
    lblWhat->setText(fontMetrics().elidedText(what, Qt::ElideMiddle, lblWhat->width()));
    showElapsed();
}

void BuildRunPage::showElapsed()
{
    lblElapsed->setText(tr("Time: %1").arg(shown(m_program.clock.monotonic() - m_begun)));
}

void BuildRunPage::end(const BuildEnd &end)
{
    const bool hadFocus = cmdStop->hasFocus();
    m_stages->end();
    showElapsed();
    showRunning(false);
    lblOutcome->setText(worded(end));
    m_log->say(lblOutcome->text());
    offerResults(true);
    if (end.success)
        tabResults->setCurrentWidget(m_findings);
    if (hadFocus)
        tabResults->setFocus();
    Q_EMIT buildEnded(end.success);
    Q_EMIT busyChanged();
}
