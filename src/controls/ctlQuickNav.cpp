#include "controls/ctlQuickNav.h"

#include "controls/parts/Handler.h"
#include "controls/quicknav/OverviewPage.h"
#include "controls/quicknav/PageChooser.h"
#include "controls/quicknav/QuickNavColumns.h"
#include "controls/quicknav/QuickNavLinkTable.h"
#include "controls/quicknav/QuickNavRequests.h"
#include "controls/quicknav/SuggestionsDialog.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QSplitter>
#include <QTabWidget>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

ctlQuickNav::ctlQuickNav(ProjectSession &session, QWidget *parent)
    : LateWidget(parent)
    , m_session(session)
    , m_contents(session)
    , m_editing(m_contents)
{
    connectEditing();
    new QuickNavRequests(m_editing, *this);
}

void ctlQuickNav::makeParts()
{
    m_problem = new QLabel(this);
    tabQuickNav = new QTabWidget(this);
    m_columns = new QuickNavColumns(m_editing, this);
    tvwLinks = new QuickNavLinkTable(m_editing, this);
    m_overview = new OverviewPage(m_editing, this);
}

void ctlQuickNav::layOut()
{
    makeParts();
    tvwLinks->setObjectName(u"tvwLinks"_s);
    tvwLinks->setAccessibleName(tr("Links of the category"));
    m_problem->setObjectName(u"lblQuickNavProblem"_s);
    m_problem->setTextFormat(Qt::PlainText);
    m_problem->setWordWrap(true);
    m_problem->hide();
    tabQuickNav->setObjectName(u"tabQuickNav"_s);
    tabQuickNav->setDocumentMode(true);
    tabQuickNav->setAccessibleName(tr("Pages of the quick-navigation editor"));
    tabQuickNav->addTab(browser(), tr("Browser"));
    tabQuickNav->addTab(m_overview, tr("Overview"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(m_problem);
    layout->addWidget(tabQuickNav, 1);
    connectParts();
    showProblem();
    enable();
}

QWidget *ctlQuickNav::browser()
{
    auto *both = new QSplitter(Qt::Vertical, this);
    both->setObjectName(u"splQuickNav"_s);
    both->addWidget(m_columns);
    both->addWidget(links());
    both->setStretchFactor(0, 3);
    both->setStretchFactor(1, 2);
    both->setChildrenCollapsible(false);
    auto *page = new QWidget(this);
    (new QVBoxLayout(page))->addWidget(both);
    return page;
}

QWidget *ctlQuickNav::links()
{
    auto *panel = new QWidget(this);
    auto *heading = new QLabel(tr("Lin&ks of the category"), panel);
    heading->setBuddy(tvwLinks);
    auto *buttons = new QHBoxLayout;
    cmdAddLink = addButton(panel, tr("&Add link..."), u"cmdAddLink"_s);
    cmdSuggest = addButton(panel, tr("&Suggest pages..."), u"cmdSuggest"_s);
    cmdOtherPage = addButton(panel, tr("Choose a&nother page..."), u"cmdOtherPage"_s);
    cmdRemoveLinks = addButton(panel, tr("&Delete links"), u"cmdRemoveLinks"_s);
    for (QPushButton *button : {cmdAddLink, cmdSuggest, cmdOtherPage, cmdRemoveLinks})
        buttons->addWidget(button);
    buttons->addStretch(1);
    auto *layout = new QVBoxLayout(panel);
    layout->setContentsMargins({});
    layout->addWidget(heading);
    layout->addWidget(tvwLinks, 1);
    layout->addLayout(buttons);
    return panel;
}

QPushButton *ctlQuickNav::addButton(QWidget *parent, const QString &text, const QString &objectName)
{
    auto *button = new QPushButton(text, parent);
    button->setObjectName(objectName);
    return button;
}

// These are there from the beginning; the rest when it is first shown.
void ctlQuickNav::connectEditing()
{
    connect(&m_editing, &QuickNavEditing::shown, this, &ctlQuickNav::showNode);
    connect(&m_editing, &QuickNavEditing::written, this,
            [this](const QString &view, const QString &category) {
                Q_EMIT evtRefreshTree(view, category, true);
            });
    connect(&m_editing, &QuickNavEditing::nodeDeleted, this,
            &ctlQuickNav::evtOnDeletionofQuickNavInfo);
}

void ctlQuickNav::connectParts()
{
    connect(m_columns, &QuickNavColumns::chosenChanged, this, &ctlQuickNav::showChosen);
    connect(m_columns, &QuickNavColumns::linksWanted, this,
            [this] { tvwLinks->setFocus(Qt::TabFocusReason); });
    connect(m_columns, &QuickNavColumns::pagesDropped, this,
            [this](const QuickNavRef &category, const QMimeData *mime) {
                tvwLinks->addPages(category, mime, -1);
            });
    connect(tvwLinks, &QuickNavLinkTable::addWanted, this, &ctlQuickNav::addLinks);
    connect(tvwLinks, &QuickNavLinkTable::retargetWanted, this, &ctlQuickNav::chooseOtherPage);
    connect(tvwLinks, &QuickNavLinkTable::currentChanged, this, &ctlQuickNav::enable);
    connect(m_overview, &OverviewPage::nodeWanted, this, &ctlQuickNav::showNode);
    connect(&m_contents, &QuickNavContents::changed, this, &ctlQuickNav::showProblem);
    connect(cmdAddLink, &QPushButton::clicked, this, &ctlQuickNav::addLinks);
    connect(cmdSuggest, &QPushButton::clicked, this, &ctlQuickNav::suggest);
    connect(cmdOtherPage, &QPushButton::clicked, this, &ctlQuickNav::chooseOtherPage);
    connect(cmdRemoveLinks, &QPushButton::clicked, tvwLinks, &QuickNavLinkTable::removeChosen);
}

void ctlQuickNav::setProjectName(const QString &name)
{
    m_session.open(name);
}

void ctlQuickNav::LoadQuickNavInfo(QString &project, QString &view, QString &group, QString &topic,
                                   QString &category, int &level)
{
    if (project != m_session.projectName())
        return;
    makeContent();
    m_contents.refresh();
    const QStringList names = QStringList{view, group, topic, category}.first(qBound(0, level, 4));
    tabQuickNav->setCurrentIndex(0);
    m_columns->choose(QuickNavTree::byNames(m_contents.nav(), names).value_or(QuickNavRef()));
}

void ctlQuickNav::SelectQuickNavCategory(const QString &name)
{
    makeContent();
    m_contents.refresh();
    const QuickNav &nav = m_contents.nav();
    const QuickNavRef chosen = m_columns->chosen();
    const bool isCategory = chosen.level == QuickNavTree::categoryLevel;
    const QuickNavRef topic = isCategory ? QuickNavTree::parentOf(nav, chosen) : chosen;
    const QList<QuickNavNode> categories = QuickNavTree::below(nav, topic);
    const QuickNavNode *found = QuickNavTree::named(categories, name);
    if (topic.level + 1 == QuickNavTree::categoryLevel && found != nullptr)
        m_columns->choose({QuickNavTree::categoryLevel, found->id});
}

void ctlQuickNav::ResetQuickNavView()
{
    makeContent();
    m_contents.refresh();
    const QuickNavRef category = m_columns->chosenCategory();
    if (category.level >= 0)
        m_columns->choose(QuickNavTree::parentOf(m_contents.nav(), category));
}

void ctlQuickNav::showNode(const QuickNavRef &node)
{
    makeContent();
    tabQuickNav->setCurrentIndex(0);
    m_columns->choose(node);
    m_columns->focusNode(node);
}

void ctlQuickNav::showChosen()
{
    tvwLinks->showLinks(m_columns->chosenCategory());
    enable();
}

// A file that cannot be read is said, and nothing is written over it.
void ctlQuickNav::showProblem()
{
    m_problem->setText(m_contents.problem().isEmpty() ? QString()
                                                      : u"\u26A0 "_s + m_contents.problem());
    m_problem->setVisible(!m_contents.problem().isEmpty());
}

void ctlQuickNav::enable()
{
    const auto set = [](QPushButton *button, bool enabled, const QString &why) {
        button->setEnabled(enabled);
        button->setToolTip(enabled ? QString() : why);
    };
    const QuickNavRef chosen = m_columns->chosen();
    const bool hasLink = tvwLinks->currentLink().has_value();
    set(cmdAddLink, m_columns->chosenCategory().level >= 0, tr("Choose a category first."));
    set(cmdSuggest, chosen.level >= QuickNavTree::categoryLevel - 1,
        tr("Choose a topic or a category first."));
    set(cmdOtherPage, hasLink, tr("Choose a link first."));
    set(cmdRemoveLinks, hasLink, tr("Choose links first."));
}

void ctlQuickNav::addLinks()
{
    const QuickNavRef category = tvwLinks->category();
    if (category.level < 0)
        return;
    const auto pages = handled(m_session.program(), [this] { return listedPages(m_session); });
    auto *chooser = new PageChooser(tr("Add links"), pages, PageChooser::Choose::Several, this);
    chooser->setAttribute(Qt::WA_DeleteOnClose);
    connect(chooser, &PageChooser::accepted, this, [this, category, chooser] {
        m_editing.addLinks(category, linksTo(chooser->chosen()));
    });
    chooser->open();
}

void ctlQuickNav::chooseOtherPage()
{
    const std::optional<QuickNavLink> link = tvwLinks->currentLink();
    if (!link)
        return;
    const auto pages = handled(m_session.program(), [this] { return listedPages(m_session); });
    auto *chooser =
        new PageChooser(tr("Choose another page"), pages, PageChooser::Choose::One, this);
    chooser->setAttribute(Qt::WA_DeleteOnClose);
    connect(chooser, &PageChooser::accepted, this, [this, link = *link, chooser] {
        if (const QList<ListedPage> chosen = chooser->chosen(); !chosen.isEmpty())
            m_editing.retarget(link, chosen.first());
    });
    chooser->open();
}

void ctlQuickNav::suggest()
{
    auto *dialog = new SuggestionsDialog(m_editing, m_columns->chosen(), this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

void ctlQuickNav::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    m_contents.setWatched(true);
}

void ctlQuickNav::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    m_contents.setWatched(false);
}

void ctlQuickNav::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Find) && tabQuickNav->currentIndex() == 0)
        m_columns->focusFilter();
    else if (event->matches(QKeySequence::Find))
        m_overview->focusFilter();
    else if (event->key() == Qt::Key_F5)
        handled(m_session.program(), [this] { m_session.reread(); });
    else
        QWidget::keyPressEvent(event);
}
