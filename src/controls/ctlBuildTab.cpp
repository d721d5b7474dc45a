#include "controls/ctlBuildTab.h"

#include "controls/build/BuildChoice.h"
#include "controls/build/BuildRunPage.h"
#include "controls/parts/Handler.h"
#include "controls/parts/Tables.h"
#include "startup/Session.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QStackedWidget>

using namespace Qt::StringLiterals;

ctlBuildTab::ctlBuildTab(Program &program, QWidget *parent)
    : LateWidget(parent)
    , m_program(program)
{
}

ctlBuildTab::~ctlBuildTab() = default;

void ctlBuildTab::layOut()
{
    stkSteps = new QStackedWidget(this);
    m_choice = new BuildChoice(m_program, stkSteps);
    m_run = new BuildRunPage(m_program, stkSteps);
    stkSteps->addWidget(m_choice);
    stkSteps->addWidget(m_run);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(stkSteps, 1);
    layout->addLayout(buttonRow());
    connect(m_run, &BuildRunPage::busyChanged, this, [this] {
        if (m_isLate && !isBusy())
            showProject();
        showStep();
    });
    connect(m_run, &BuildRunPage::buildEnded, this, &ctlBuildTab::evtProcessComplete);
    connect(m_run, &BuildRunPage::placeRequested, this, &ctlBuildTab::placeRequested);
    showProject();
    showStep();
    cmdNext->setFocus();
}

QLayout *ctlBuildTab::buttonRow()
{
    cmdBack = makeButton(u"cmdBack"_s, "back"_L1, tr("&Back"), this);
    cmdNext = makeButton(u"cmdNext"_s, "continue"_L1, tr("&Next"), this);
    cmdClose = makeButton(u"cmdClose"_s, "close"_L1, tr("&Close"), this);
    cmdNext->setDefault(true);
    connect(cmdBack, &QPushButton::clicked, this, &ctlBuildTab::back);
    connect(cmdNext, &QPushButton::clicked, this, &ctlBuildTab::next);
    connect(cmdClose, &QPushButton::clicked, this, &ctlBuildTab::leave);
    auto *row = new QHBoxLayout;
    row->addStretch();
    for (QPushButton *const button : {cmdBack, cmdNext, cmdClose})
        row->addWidget(button);
    return row;
}

void ctlBuildTab::setProjectName(const QString &name)
{
    m_project = name;
    showProject();
}

void ctlBuildTab::setProjectLanguage(const QString &code)
{
    m_language = code;
    showProject();
}

void ctlBuildTab::RefreshStatus(const QString &)
{
    if (!hasContent())
        return;
    if (!m_isLate)
        m_run->noteChange();
    m_choice->refresh();
}

bool ctlBuildTab::isBusy() const
{
    return hasContent() && m_run->isBusy();
}

void ctlBuildTab::finish()
{
    if (hasContent())
        m_run->finish();
}

BuiltProject ctlBuildTab::project() const
{
    const Session &session = m_program.session;
    return {m_program, m_project, m_language.isEmpty() ? session.projectLanguage : m_language};
}

void ctlBuildTab::showProject()
{
    if (!hasContent())
        return;
    m_isLate = isBusy();
    if (m_isLate)
        return;
    if (isAtRun())
        back();
    else
        m_choice->setProject(project());
    showStep();
}

bool ctlBuildTab::isAtRun() const
{
    return stkSteps->currentWidget() == m_run;
}

void ctlBuildTab::showStep()
{
    cmdNext->setVisible(!isAtRun());
    cmdNext->setEnabled(!m_project.isEmpty());
    cmdBack->setVisible(isAtRun());
    cmdBack->setEnabled(!isBusy());
    cmdClose->setEnabled(!isBusy());
}

void ctlBuildTab::next()
{
    handled(m_program, [this] {
        if (m_mayStart && !m_mayStart())
            return;
        const BuildOrder order = m_choice->order();
        stkSteps->setCurrentWidget(m_run);
        Q_EMIT evtNext();
        m_run->begin(project(), order);
        showStep();
    });
}

void ctlBuildTab::back()
{
    m_choice->setProject(project());
    stkSteps->setCurrentWidget(m_choice);
    showStep();
    cmdNext->setFocus();
    Q_EMIT evtBack();
}

void ctlBuildTab::leave()
{
    if (isAtRun())
        Q_EMIT evtZippingComplete();
    else
        Q_EMIT closeRequested();
}
