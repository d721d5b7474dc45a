#include "controls/ctlGlobalsTab.h"

#include "controls/globals/CategoriesPage.h"
#include "controls/globals/GlobalPages.h"
#include "controls/globals/ProjectPage.h"
#include "controls/globals/QuickNavCategories.h"

#include <QApplication>
#include <QEvent>
#include <QTabWidget>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

ctlGlobalsTab::ctlGlobalsTab(ProjectSession &session, QWidget *parent)
    : QWidget(parent)
    , m_session(session)
    , tabGlobals(new QTabWidget(this))
    , m_projectPage(new ProjectPage(session, this))
    , m_globalPages(new GlobalPages(session, this))
    , m_categories(new CategoriesPage(session, this))
    , m_quickNavCategories(new QuickNavCategories(session, this))
{
    layOut();
    connectPages();
    enable();
}

void ctlGlobalsTab::layOut()
{
    tabGlobals->setObjectName(u"tabGlobals"_s);
    tabGlobals->setDocumentMode(true);
    tabGlobals->addTab(m_projectPage, tr("Project"));
    tabGlobals->addTab(m_globalPages, tr("Global pages"));
    tabGlobals->addTab(m_categories, tr("Categories"));
    tabGlobals->addTab(m_quickNavCategories, tr("Quick-navigation categories"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(tabGlobals);
}

void ctlGlobalsTab::connectPages()
{
    connect(&m_session, &ProjectSession::wasReset, this, &ctlGlobalsTab::enable);
    // Markers in pages and the packed copy went with the old name: a build must take it in.
    connect(m_projectPage, &ProjectPage::renamed, this, [this] {
        const QString name = m_session.projectName();
        Q_EMIT OnprojectNameChange();
        Q_EMIT OnAddGlobalPage({}, {}, true);
        Q_EMIT m_session.done(tr("The project is now called %1.").arg(name));
    });
    connect(&m_session, &ProjectSession::requested, this, [this](const ProjectRequest &request) {
        if (request.node.kind == ProjectRequest::Node::Kind::Project
            && request.action == ProjectRequest::Action::Rename)
            m_projectPage->askRename();
    });
    connect(m_globalPages, &GlobalPages::changed, this,
            [this](const QString &page, const QString &type) {
                Q_EMIT OnAddGlobalPage(page, type, true);
            });
    connect(m_globalPages, &GlobalPages::openRequested, this, [this] {
        tabGlobals->setCurrentWidget(m_globalPages);
        Q_EMIT openRequested();
    });
    connect(m_categories, &CategoriesPage::added, this, &ctlGlobalsTab::OnCategoryAddition);
    connect(m_categories, &CategoriesPage::deleted, this, &ctlGlobalsTab::OnCategoryDeletion);
    connect(m_categories, &CategoriesPage::renamed, this, &ctlGlobalsTab::OnRefreshTree);
    connect(m_quickNavCategories, &QuickNavCategories::changed, this,
            [this] { Q_EMIT OnAdditionQNCategory(true); });
}

void ctlGlobalsTab::enable()
{
    setEnabled(!m_session.projectName().isEmpty());
}

QString ctlGlobalsTab::ProjectName() const
{
    return m_session.projectName();
}

void ctlGlobalsTab::setProjectName(const QString &name)
{
    m_session.open(name);
}

void ctlGlobalsTab::setGlobalPageName(const QString &page)
{
    if (m_globalPages->choose(page))
        tabGlobals->setCurrentWidget(m_globalPages);
    else
        tabGlobals->setCurrentWidget(m_projectPage);
}

void ctlGlobalsTab::showPlace(const QString &path, qsizetype start, qsizetype length)
{
    tabGlobals->setCurrentWidget(m_globalPages);
    m_globalPages->showPlace(path, start, length);
}

bool ctlGlobalsTab::mayLeave()
{
    return m_globalPages->mayLeave();
}

bool ctlGlobalsTab::event(QEvent *event)
{
    // Back from another program: somebody may have changed the page meanwhile.
    const bool isBack = event->type() == QEvent::WindowActivate;
    if (isBack && QApplication::activeModalWidget() == nullptr)
        QMetaObject::invokeMethod(m_globalPages, &GlobalPages::noticeChanges, Qt::QueuedConnection);
    return QWidget::event(event);
}
