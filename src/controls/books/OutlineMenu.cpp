#include "controls/books/OutlineMenu.h"

#include "controls/books/OutlineTree.h"
#include "controls/books/PageActions.h"
#include "controls/books/PagePlaces.h"
#include "resources/Icons.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>

using namespace Qt::StringLiterals;

OutlineMenu::OutlineMenu(ProjectSession &session, OutlineTree *tree, PageActions *pages)
    : QObject(tree)
    , m_session(session)
    , m_tree(tree)
    , m_pages(pages)
{
    tree->setContextMenuPolicy(Qt::ActionsContextMenu);
    addPageCommands();
    addSeparator();
    addMoves();
    addSeparator();
    addLocks();
    connect(tree, &OutlineTree::itemSelectionChanged, this, &OutlineMenu::refresh);
}

QAction *OutlineMenu::add(const char *objectName, const QString &text, const QKeySequence &keys,
                          Needs needs,
                          const std::function<void(const TocBook &, const Pages &)> &command)
{
    auto *action = new QAction(text, m_tree);
    action->setObjectName(QString::fromLatin1(objectName));
    action->setShortcut(keys);
    action->setShortcutContext(Qt::WidgetShortcut);
    action->setData(static_cast<int>(needs));
    m_tree->addAction(action);
    connect(action, &QAction::triggered, this, [this, action, command] {
        if (const auto book = m_session.currentBook(); book && canRun(action))
            command(*book, m_tree->chosen());
    });
    return action;
}

void OutlineMenu::addSeparator()
{
    auto *line = new QAction(m_tree);
    line->setSeparator(true);
    m_tree->addAction(line);
}

void OutlineMenu::addPageCommands()
{
    m_new = add("mnuNewPage", tr("&New page..."), Qt::Key_Insert, Needs::Book,
                [this](const TocBook &book, const Pages &pages) {
                    m_pages->askNew(book, pages.isEmpty() ? OutlinePlace{}
                                                          : OutlinePlace{OutlinePlace::Where::After,
                                                                         pages.last()});
                });
    m_new->setIcon(icon("page-new"_L1));
    add("mnuRenamePage", tr("&Rename"), Qt::Key_F2, Needs::OnePage,
        [this](const TocBook &, const Pages &pages) {
            m_tree->editItem(m_tree->itemOf(pages.first()));
        })
        ->setIcon(icon("edit"_L1));
    add("mnuRenameFile", tr("Rename &file..."), {}, Needs::OnePage,
        [this](const TocBook &book, const Pages &pages) {
            m_pages->askRenameFile(book, pages.first());
        });
    add("mnuDuplicatePage", tr("D&uplicate"), {}, Needs::OnePage,
        [this](const TocBook &book, const Pages &pages) {
            m_pages->duplicate(book, pages.first());
        })
        ->setIcon(icon("copy"_L1));
    add("mnuDeletePage", tr("&Delete..."), QKeySequence::Delete, Needs::SomePages,
        [this](const TocBook &book, const Pages &pages) { m_pages->askDelete(book, pages); })
        ->setIcon(icon("delete"_L1));
    add("mnuListPages", tr("&List pages of the folder..."), {}, Needs::Book,
        [this](const TocBook &, const Pages &) { Q_EMIT listRequested(); });
}

void OutlineMenu::addMoves()
{
    const auto move = [&](const char *name, const QString &text, const QKeySequence &keys,
                          QLatin1StringView picture, const auto &command) {
        add(name, text, keys, Needs::SomePages, command)->setIcon(icon(picture));
    };
    move("mnuMoveUp", tr("Move u&p"), Qt::ALT | Qt::Key_Up, "up"_L1,
         [this](const TocBook &book, const Pages &pages) { m_pages->moveUp(book, pages); });
    move("mnuMoveDown", tr("Move d&own"), Qt::ALT | Qt::Key_Down, "down"_L1,
         [this](const TocBook &book, const Pages &pages) { m_pages->moveDown(book, pages); });
    move("mnuPromote", tr("Pro&mote"), Qt::ALT | Qt::Key_Left, "left"_L1,
         [this](const TocBook &book, const Pages &pages) { m_pages->promote(book, pages); });
    move("mnuDemote", tr("D&emote"), Qt::ALT | Qt::Key_Right, "right"_L1,
         [this](const TocBook &book, const Pages &pages) { m_pages->demote(book, pages); });
    add("mnuMoveToBook", tr("Move to another &book..."), {}, Needs::SomePages,
        [this](const TocBook &book, const Pages &pages) { m_pages->askMove(book, pages); });
    add("mnuSortBelow", tr("&Sort the pages below by title"), {}, Needs::OnePage,
        [this](const TocBook &book, const Pages &pages) { m_pages->sort(book, pages.first()); });
    add("mnuSortBook", tr("Sort the &top pages by title"), {}, Needs::Book,
        [this](const TocBook &book, const Pages &) { m_pages->sort(book, {}); });
}

void OutlineMenu::addLocks()
{
    add("mnuUnlock", tr("Unloc&k"), {}, Needs::SomePages,
        [this](const TocBook &book, const Pages &pages) { m_pages->setLocked(book, pages, false); })
        ->setIcon(icon("unlock"_L1));
    add("mnuLock", tr("Lo&ck"), {}, Needs::SomePages,
        [this](const TocBook &book, const Pages &pages) { m_pages->setLocked(book, pages, true); })
        ->setIcon(icon("lock"_L1));
    add("mnuCopyPath", tr("Cop&y path"), {}, Needs::OnePage,
        [this](const TocBook &book, const Pages &pages) { copyPath(book, pages.first()); });
}

void OutlineMenu::copyPath(const TocBook &book, const QString &page)
{
    if (const auto found = pageOfBook(m_session, book, page))
        QGuiApplication::clipboard()->setText(
            m_session.shownPath(m_session.folder() + pathOfPage(m_session, book, *found)));
}

bool OutlineMenu::canRun(const QAction *action) const
{
    const auto count = m_tree->selectedItems().size();
    switch (static_cast<Needs>(action->data().toInt())) {
    case Needs::OnePage:
        return count == 1;
    case Needs::SomePages:
        return count > 0;
    default:
        return m_tree->isEnabled() && m_session.currentBook().has_value();
    }
}

void OutlineMenu::refresh()
{
    for (QAction *const action : m_tree->actions()) {
        if (!action->isSeparator())
            action->setEnabled(canRun(action));
    }
}
