#include "viewer/ViewerWindow.h"

#include "controls/Resizer.h"
#include "controls/parts/PaneCycle.h"
#include "controls/parts/PlainLabel.h"
#include "platform/QvError.h"
#include "viewer/BookmarksTab.h"
#include "viewer/ContentsTree.h"
#include "viewer/FindInPage.h"
#include "viewer/SearchTab.h"
#include "viewer/ViewerPage.h"

#include <QAction>
#include <QSplitter>
#include <QStatusBar>
#include <QTabWidget>
#include <QToolBar>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

ViewerWindow::ViewerWindow(ViewerWorld &world, QWidget *parent)
    : QMainWindow(parent)
    , m_world(world)
    , m_tools(addToolBar(tr("Tools")))
    , m_tabs(new QTabWidget(this))
    , m_contents(new ContentsTree(world, this))
    , lblNotes(plainLabel({}, this))
    , m_search(new SearchTab(world, this))
    , m_bookmarks(new BookmarksTab(this))
    , m_page(new ViewerPage(world, this))
{
    setObjectName(u"ViewerWindow"_s);
    setWindowTitle(viewerCaption);
    layOut();
    makeActions();
    addPaneKeys(this);
    connectParts();
    reread();
}

void ViewerWindow::layOut()
{
    m_tools->setObjectName(u"tlbTools"_s);
    m_tools->setMovable(false);
    m_tabs->setObjectName(u"tabParts"_s);
    m_tabs->addTab(contentsTab(), tr("&Contents"));
    m_tabs->addTab(m_search, tr("&Search"));
    m_tabs->addTab(m_bookmarks, tr("Book&marks"));
    auto *splitter = new QSplitter(this);
    splitter->setObjectName(u"splParts"_s);
    splitter->addWidget(m_tabs);
    splitter->addWidget(m_page);
    splitter->setStretchFactor(1, 1);
    splitter->setChildrenCollapsible(false);
    setCentralWidget(splitter);
    statusBar()->setSizeGripEnabled(true);
    const int letter = fontMetrics().averageCharWidth();
    splitter->setSizes({letter * 42, letter * 98});
    resize(letter * 140, fontMetrics().height() * 42);
    new Resizer(u"Viewer"_s, this);
    new Resizer(u"ViewerParts"_s, splitter);
}

QWidget *ViewerWindow::contentsTab()
{
    auto *tab = new QWidget(this);
    tab->setFocusProxy(m_contents);
    lblNotes->setObjectName(u"lblNotes"_s);
    lblNotes->setMargin(fontMetrics().averageCharWidth());
    auto *layout = new QVBoxLayout(tab);
    layout->setContentsMargins({});
    layout->addWidget(m_contents, 1);
    layout->addWidget(lblNotes);
    return tab;
}

void ViewerWindow::connectParts()
{
    const auto openPlace = [this](const ViewerPlace &place) { open(place); };
    connect(m_contents, &ContentsTree::placeChosen, this, openPlace);
    connect(m_bookmarks, &BookmarksTab::placeChosen, this, openPlace);
    connect(m_search, &SearchTab::hitChosen, this, &ViewerWindow::open);
    connect(m_page, &ViewerPage::placeRequested, this, openPlace);
    connect(m_page, &ViewerPage::rereadRequested, this, &ViewerWindow::reread);
    connect(m_page, &ViewerPage::told, this,
            [this](const QString &text) { statusBar()->showMessage(text); });
}

void ViewerWindow::showTopic(const QString &topic)
{
    QString page = HelpPages::start;
    const auto unreadable = [this](const QvError &error) {
        statusBar()->showMessage(error.description());
    };
    trap(unreadable, [&] { page = m_world.help.pageFor(topic); });
    open({{}, page});
    if (topic.trimmed().isEmpty())
        m_tabs->setCurrentIndex(0);
}

void ViewerWindow::answerRequest(const QString &kind, const QString &topic)
{
    showMaximized();
    raise();
    activateWindow();
    if (kind.isEmpty())
        return;
    reread();
    showTopic(topic);
}

void ViewerWindow::open(const ViewerPlace &place, const QStringList &asked)
{
    m_history.note(m_page->scroll());
    m_history.visit(place);
    m_page->open(place, asked);
    shown(place);
}

void ViewerWindow::go(int steps)
{
    if (!m_history.canGo(steps))
        return;
    m_history.note(m_page->scroll());
    const PlaceHistory::Visit &visit = m_history.go(steps);
    m_page->open(visit.place, {}, visit.scroll);
    shown(visit.place);
}

void ViewerWindow::shown(const ViewerPlace &place)
{
    m_back->setEnabled(m_history.canGo(-1));
    m_forward->setEnabled(m_history.canGo(1));
    m_search->chooseSet(place.set);
    m_contents->showPlace(place);
    statusBar()->showMessage(place.set.isEmpty() ? m_page->title()
                                                 : m_page->title() + u" – "_s + place.set);
}

void ViewerWindow::reread()
{
    m_contents->reload();
    lblNotes->setText(m_contents->notes().join(u'\n'));
    lblNotes->setVisible(!m_contents->notes().isEmpty());
    m_search->reload();
    rereadPage();
}

void ViewerWindow::rereadPage()
{
    if (m_history.canGo(0))
        m_page->open(m_history.here(), {}, m_page->scroll());
}

void ViewerWindow::addBookmark()
{
    m_bookmarks->add(m_page->title(), m_history.here());
    m_tabs->setCurrentWidget(m_bookmarks);
}
