#include "resources/Icons.h"
#include "viewer/ContentsTree.h"
#include "viewer/FindInPage.h"
#include "viewer/SearchTab.h"
#include "viewer/ViewerColours.h"
#include "viewer/ViewerPage.h"
#include "viewer/ViewerWindow.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QPrintDialog>
#include <QPrinter>
#include <QSettings>
#include <QTabWidget>
#include <QToolBar>

using namespace Qt::StringLiterals;

namespace {

constexpr auto zoomKey = "Viewer/Zoom"_L1;
constexpr int mostZoom = 30, leastZoom = -5;

} // namespace

void ViewerWindow::makeActions()
{
    auto *file = menuBar()->addMenu(tr("&File"));
    makeGoMenu();
    makeViewMenu();
    action(file, "mnuBookmark", tr("Add &bookmark"), Qt::CTRL | Qt::Key_D, "add"_L1,
           [this] { addBookmark(); });
    action(file, "mnuPrint", tr("&Print..."), QKeySequence::Print, {}, [this] { print(); });
    file->addSeparator();
    action(file, "mnuClose", tr("&Close"), Qt::CTRL | Qt::Key_Q, {}, [this] { close(); });
}

void ViewerWindow::makeGoMenu()
{
    auto *menu = menuBar()->addMenu(tr("&Go"));
    m_back =
        action(menu, "mnuBack", tr("&Back"), Qt::ALT | Qt::Key_Left, "back"_L1, [this] { go(-1); });
    m_forward = action(menu, "mnuForward", tr("&Forward"), Qt::ALT | Qt::Key_Right, "continue"_L1,
                       [this] { go(1); });
    action(menu, "mnuHome", tr("&Home"), Qt::ALT | Qt::Key_Home, "help"_L1,
           [this] { showTopic({}); });
    menu->addSeparator();
    action(menu, "mnuContents", tr("&Contents"), Qt::Key_F1, {}, [this] {
        m_tabs->setCurrentIndex(0);
        m_contents->setFocus();
    });
    QAction *const search =
        action(menu, "mnuSearch", tr("&Search"), Qt::CTRL | Qt::Key_L, {}, [this] {
            m_tabs->setCurrentWidget(m_search);
            m_search->setFocus();
        });
    search->setShortcuts({Qt::CTRL | Qt::Key_L, Qt::CTRL | Qt::SHIFT | Qt::Key_F});
}

void ViewerWindow::makeViewMenu()
{
    auto *menu = menuBar()->addMenu(tr("&View"));
    FindInPage *const finding = m_page->finding();
    action(menu, "mnuFind", tr("&Find in the page"), QKeySequence::Find, "find"_L1,
           [finding] { finding->open(); });
    action(menu, "mnuFindNext", tr("Find &next"), QKeySequence::FindNext, {},
           [finding] { finding->findNext(); });
    action(menu, "mnuFindPrevious", tr("Find &previous"), QKeySequence::FindPrevious, {},
           [finding] { finding->findPrevious(); });
    menu->addSeparator();
    QAction *const larger = action(menu, "mnuLarger", tr("&Larger text"), QKeySequence::ZoomIn, {},
                                   [this] { zoomTo(m_zoom + 1); });
    larger->setShortcuts({QKeySequence::ZoomIn, Qt::CTRL | Qt::Key_Equal}); // plus without Shift
    action(menu, "mnuSmaller", tr("&Smaller text"), QKeySequence::ZoomOut, {},
           [this] { zoomTo(m_zoom - 1); });
    action(menu, "mnuUsual", tr("&Usual size"), Qt::CTRL | Qt::Key_0, {}, [this] { zoomTo(0); });
    QAction *const dark = menu->addAction(tr("&Dark colours"));
    dark->setObjectName(u"mnuDark"_s);
    dark->setCheckable(true);
    dark->setChecked(ViewerColours::areDark());
    connect(dark, &QAction::triggered, this, [this](bool on) {
        ViewerColours::useDark(on);
        rereadPage(); // pages take the colours of links when they are read
    });
    menu->addSeparator();
    action(menu, "mnuReread", tr("&Reread"), Qt::Key_F5, "refresh"_L1, [this] { reread(); });
    useZoom(QSettings().value(zoomKey).toInt());
}

QAction *ViewerWindow::action(QMenu *menu, const char *name, const QString &text,
                              const QKeySequence &keys, QLatin1StringView iconName,
                              const std::function<void()> &does)
{
    QAction *const made = menu->addAction(text);
    made->setObjectName(QString::fromLatin1(name));
    made->setShortcut(keys);
    if (!iconName.isEmpty()) {
        made->setIcon(icon(iconName));
        m_tools->addAction(made);
    }
    connect(made, &QAction::triggered, this, does);
    return made;
}

void ViewerWindow::zoomTo(int steps)
{
    useZoom(steps);
    QSettings().setValue(zoomKey, m_zoom);
}

void ViewerWindow::useZoom(int steps)
{
    m_zoom = qBound(leastZoom, steps, mostZoom);
    m_page->zoom(m_zoom);
}

void ViewerWindow::print()
{
    QPrinter printer;
    QPrintDialog dialog(&printer, this);
    if (dialog.exec() == QDialog::Accepted)
        m_page->print(printer);
}
