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
    , m_globalPages(new LatePage<GlobalPages>(
          session, [this](GlobalPages *pages) { connectGlobalPages(pages); }, this))
    , m_categories(new LatePage<CategoriesPage>(
          session, [this](CategoriesPage *made) { connectCategories(made); }, this))
    , m_quickNavCategories(new LatePage<QuickNavCategories>(
          session, [this](QuickNavCategories *made) { connectQuickNavCategories(made); }, this))
{
    layOut();
    connectSession();
    connectProjectPage();
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

void ctlGlobalsTab::connectSession()
{
    connect(&m_session, &ProjectSession::wasReset, this, &ctlGlobalsTab::enable);
    connect(&m_session, &ProjectSession::requested, this, &ctlGlobalsTab::obey);
}

void ctlGlobalsTab::connectProjectPage()
{
    // Markers in pages and the packed copy went with the old name: a build must take it in.
    connect(m_projectPage, &ProjectPage::renamed, this, [this] {
        const QString name = m_session.projectName();
        Q_EMIT OnprojectNameChange();
        Q_EMIT OnAddGlobalPage({}, {}, true);
        Q_EMIT m_session.done(tr("The project is now called %1.").arg(name));
    });
}

void ctlGlobalsTab::connectGlobalPages(GlobalPages *pages)
{
    connect(pages, &GlobalPages::changed, this, [this](const QString &page, const QString &type) {
        Q_EMIT OnAddGlobalPage(page, type, true);
    });
}

void ctlGlobalsTab::connectCategories(CategoriesPage *categories)
{
    connect(categories, &CategoriesPage::added, this, &ctlGlobalsTab::OnCategoryAddition);
    connect(categories, &CategoriesPage::deleted, this, &ctlGlobalsTab::OnCategoryDeletion);
    connect(categories, &CategoriesPage::renamed, this, &ctlGlobalsTab::OnRefreshTree);
}

void ctlGlobalsTab::connectQuickNavCategories(QuickNavCategories *categories)
{
    connect(categories, &QuickNavCategories::changed, this,
            [this] { Q_EMIT OnAdditionQNCategory(true); });
}

/// The tree and other controls ask for what is done here.
void ctlGlobalsTab::obey(const ProjectRequest &request)
{
    using Kind = ProjectRequest::Node::Kind;
    const Kind kind = request.node.kind;
    if (kind == Kind::Project && request.action == ProjectRequest::Action::Rename)
        m_projectPage->askRename();
    if (kind != Kind::Globals && kind != Kind::GlobalPage)
        return;
    tabGlobals->setCurrentWidget(m_globalPages);
    Q_EMIT openRequested();
    m_globalPages->made()->obey(request);
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
    if (!page.isEmpty() && m_globalPages->made()->choose(page))
        tabGlobals->setCurrentWidget(m_globalPages);
    else
        tabGlobals->setCurrentWidget(m_projectPage);
}

void ctlGlobalsTab::showPlace(const QString &path, qsizetype start, qsizetype length)
{
    tabGlobals->setCurrentWidget(m_globalPages);
    m_globalPages->made()->showPlace(path, start, length);
}

bool ctlGlobalsTab::mayLeave()
{
    return m_globalPages->ifMade() == nullptr || m_globalPages->made()->mayLeave();
}

bool ctlGlobalsTab::event(QEvent *event)
{
    // Back from another program: somebody may have changed the page meanwhile.
    const bool isBack = event->type() == QEvent::WindowActivate;
    if (isBack && QApplication::activeModalWidget() == nullptr)
        QMetaObject::invokeMethod(this, &ctlGlobalsTab::noticeChanges, Qt::QueuedConnection);
    return QWidget::event(event);
}

void ctlGlobalsTab::noticeChanges()
{
    if (GlobalPages *const pages = m_globalPages->ifMade())
        pages->noticeChanges();
}
