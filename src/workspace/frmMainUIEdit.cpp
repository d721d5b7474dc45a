// The main window's Edit menu, recent places, and the keys that work everywhere.
#include "workspace/frmMainUI.h"

#include "controls/QV_DeveloperTreeOCX.h"
#include "controls/ctlBooksTab.h"
#include "controls/parts/PaneCycle.h"
#include "resources/Icons.h"
#include "startup/Session.h"
#include "startup/frmProgBar.h"
#include "ui_frmMainUI.h"
#include "workspace/ShortcutList.h"

#include <QApplication>
#include <QMenu>
#include <QScopedValueRollback>

using namespace Qt::StringLiterals;

namespace {

/// A text in a menu as it stands: "&" is no mnemonic there.
QString inMenu(const QString &text)
{
    return QString(text).replace(u'&', "&&"_L1);
}

} // namespace

void frmMainUI::connectEdit()
{
    using Self = frmMainUI;
    ui->mnuUndo->setIcon(icon("undo"_L1));
    ui->mnuUndo->setShortcut(QKeySequence::Undo);
    ui->mnuRedo->setShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_Z);
    connect(ui->mnuUndo, &QAction::triggered, this, &Self::mnuUndo_Click);
    connect(ui->mnuRedo, &QAction::triggered, this, &Self::mnuRedo_Click);
    connect(ui->mnuFindInPages, &QAction::triggered, ctlBooksTab1, &ctlBooksTab::findInPages);
    connect(ui->mnuShortcuts, &QAction::triggered, this, &Self::mnuShortcuts_Click);
    connect(&m_project.history(), &ChangeHistory::changed, this, &Self::showHistory);
    connect(&m_project, &ProjectSession::historyMoved, this, &Self::noteHistory);
    m_project.setRunner(
        [this](const QString &title, const std::function<void(const Progress &)> &work) {
            runWithProgress(m_program, this, title, work);
        });
    addPaneKeys(this);
    connectRecent();
    showHistory();
}

void frmMainUI::connectRecent()
{
    connect(ui->mnuRecentProjects, &QMenu::aboutToShow, this, &frmMainUI::showRecentProjects);
    connect(ui->mnuRecentPages, &QMenu::aboutToShow, this, &frmMainUI::showRecentPages);
    connect(&m_project, &ProjectSession::wasReset, this, [this] {
        if (!m_project.projectName().isEmpty())
            RecentPlaces(m_program.session.serverPath).opened(m_project.projectName());
    });
    connect(&m_project, &ProjectSession::selectionChanged, this, &frmMainUI::noteRecentPage);
}

void frmMainUI::showHistory()
{
    ChangeHistory &history = m_project.history();
    ui->mnuUndo->setEnabled(history.canUndo());
    ui->mnuRedo->setEnabled(history.canRedo());
    ui->mnuUndo->setText(history.canUndo() ? tr("&Undo: %1").arg(inMenu(history.undoName()))
                                           : tr("&Undo"));
    ui->mnuRedo->setText(history.canRedo() ? tr("&Redo: %1").arg(inMenu(history.redoName()))
                                           : tr("&Redo"));
}

void frmMainUI::mnuUndo_Click()
{
    inHandler("mnuUndo_Click"_L1, [this] { m_project.undo(); });
}

void frmMainUI::mnuRedo_Click()
{
    inHandler("mnuRedo_Click"_L1, [this] { m_project.redo(); });
}

// What was undone is as little built as what was done.
void frmMainUI::noteHistory(ProjectAreas areas)
{
    inHandler("noteHistory"_L1, [&] {
        Session &session = m_program.session;
        session.booksChanged = session.booksChanged || areas.testFlag(ProjectArea::Books);
        session.globalsChanged = session.globalsChanged || areas.testFlag(ProjectArea::Globals);
        session.quickNavChanged = session.quickNavChanged || areas.testFlag(ProjectArea::QuickNav);
        clearLights();
    });
}

void frmMainUI::showRecentProjects()
{
    ui->mnuRecentProjects->clear();
    for (const QString &name : RecentPlaces(m_program.session.serverPath).projects()) {
        if (name == m_project.projectName())
            continue;
        ui->mnuRecentProjects->addAction(inMenu(name), this, [this, name] { openRecent(name); });
    }
    if (ui->mnuRecentProjects->isEmpty())
        ui->mnuRecentProjects->addAction(tr("No other project yet"))->setEnabled(false);
}

void frmMainUI::openRecent(const QString &project)
{
    inHandler("mnuRecentProjects_Click"_L1, [&] {
        const QScopedValueRollback switching(m_switchingProject, true);
        const auto forget = [&](const QvError &error) {
            if (error.number() == InvalidCall) // it is gone; any other trouble may pass
                RecentPlaces(m_program.session.serverPath).forget(project);
            throw error;
        };
        trap(forget, [&] { m_program.navigator.openProject(project); });
    });
}

void frmMainUI::showRecentPages()
{
    ui->mnuRecentPages->clear();
    for (const RecentPage &page :
         RecentPlaces(m_program.session.serverPath).pages(m_project.projectName())) {
        const auto &books = m_project.books();
        const auto book = std::find_if(books.cbegin(), books.cend(), [&](const TocBook &entry) {
            return entry.acronym == page.book;
        });
        if (book == books.cend())
            continue;
        const QString title = inMenu(u"%1 \u2014 %2"_s.arg(page.title, book->name));
        ui->mnuRecentPages->addAction(title, this, [this, entry = *book, id = page.page] {
            inHandler("mnuRecentPages_Click"_L1, [&] {
                if (m_project.select(entry, id))
                    Q_EMIT m_project.openRequested();
            });
        });
    }
    if (ui->mnuRecentPages->isEmpty())
        ui->mnuRecentPages->addAction(tr("No page yet"))->setEnabled(false);
}

void frmMainUI::noteRecentPage()
{
    const auto &book = m_project.currentBook();
    const QString id = m_project.currentPage();
    if (!book || id.isEmpty())
        return;
    // A book that cannot be read is spoken of where it is shown.
    trap([](const QvError &) {},
         [&] {
             for (const BookPage &page : flattened(m_project.book(*book).pages)) {
                 if (page.id == id)
                     RecentPlaces(m_program.session.serverPath)
                         .shown(m_project.projectName(), {book->acronym, id, page.title});
             }
         });
}

void frmMainUI::mnuShortcuts_Click()
{
    auto *list = new ShortcutList(this);
    list->setAttribute(Qt::WA_DeleteOnClose);
    list->open();
}
