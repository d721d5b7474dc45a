#include "controls/ctlBuildTab.h"

#include "catalogue/StatusIndicators.h"
#include "controls/parts/StatusLight.h"
#include "startup/Program.h"
#include "startup/Session.h"

#include <QLabel>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

ctlBuildTab::ctlBuildTab(Program &program, QWidget *parent)
    : QWidget(parent)
    , m_program(program)
    , lblProject(new QLabel(this))
    , lblProblem(new QLabel(this))
{
    auto *layout = new QVBoxLayout(this);
    lblProject->setObjectName(u"lblProject"_s);
    lblProject->setTextFormat(Qt::PlainText);
    layout->addWidget(lblProject);
    m_docToDoc = addLight(u"DoctoDoc"_s, tr("Document to document links"));
    m_contextSettings = addLight(u"ContextSettings"_s, tr("Context settings"));
    m_quickNav = addLight(u"QuickNav"_s, tr("Quick navigation"));
    m_searchIndex = addLight(u"SearchIndex"_s, tr("Search words"));
    lblProblem->setObjectName(u"lblProblem"_s);
    lblProblem->setWordWrap(true);
    lblProblem->setText(tr("The status file of this project is missing or cannot be read. Open the "
                           "project again to make a new one."));
    lblProblem->hide();
    layout->addWidget(lblProblem);
    layout->addStretch();
}

StatusLight *ctlBuildTab::addLight(const QString &objectName, const QString &subject)
{
    auto *const light = new StatusLight(subject, this);
    light->setObjectName(objectName);
    layout()->addWidget(light);
    return light;
}

void ctlBuildTab::setProjectName(const QString &name)
{
    m_project = name;
    showProject();
    showLights();
}

void ctlBuildTab::setProjectLanguage(const QString &code)
{
    m_language = code;
    showProject();
}

void ctlBuildTab::RefreshStatus(const QString &)
{
    showLights();
}

void ctlBuildTab::showProject()
{
    lblProject->setText(m_language.isEmpty() ? m_project : m_project + u" ("_s + m_language + u')');
}

void ctlBuildTab::showLights()
{
    Session session = m_program.session; // the control's own project, whichever is current
    session.projectName = m_project;
    std::optional<StatusLights> lights;
    if (!m_project.isEmpty())
        lights = StatusIndicators(session, m_program.files, m_program.currentProject).lights();
    lblProblem->setVisible(!lights && !m_project.isEmpty());

    const StatusLights shown = lights.value_or(StatusLights{});
    m_docToDoc->setColour(shown.docToDoc);
    m_contextSettings->setColour(shown.contextSettings);
    m_quickNav->setColour(shown.quickNav);
    m_searchIndex->setColour(shown.searchIndex);
}
