#include "controls/quicknav/QuickNavLinkTable.h"

#include "controls/parts/Handler.h"
#include "controls/parts/ListCommands.h"
#include "controls/quicknav/ProblemLook.h"
#include "controls/quicknav/QuickNavLinkDelegate.h"
#include "controls/session/ProjectPages.h"
#include "controls/tree/ProjectMime.h"
#include "resources/Icons.h"

#include <QAction>
#include <QClipboard>
#include <QDropEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMimeData>
#include <QSignalBlocker>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

QuickNavLinkTable::QuickNavLinkTable(QuickNavEditing &editing, QWidget *parent)
    : QTreeWidget(parent)
    , m_editing(editing)
    , m_session(editing.contents().session())
{
    layOut();
    addActions();
    connect(this, &QTreeWidget::itemDoubleClicked, this, &QuickNavLinkTable::openCurrent);
    connect(this, &QTreeWidget::itemSelectionChanged, this, &QuickNavLinkTable::enableActions);
    connect(this, &QTreeWidget::currentItemChanged, this, &QuickNavLinkTable::enableActions);
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this,
            &QuickNavLinkTable::enableActions);
    enableActions();
}

void QuickNavLinkTable::layOut()
{
    setItemDelegate(new QuickNavLinkDelegate(*this));
    setHeaderLabels({tr("Link"), tr("Book"), tr("Page"), tr("Place in the page"), tr("State")});
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setTextElideMode(Qt::ElideMiddle);
    setSelectionMode(ExtendedSelection);
    setEditTriggers(NoEditTriggers);
    setDragEnabled(true);
    setAcceptDrops(true);
    setDragDropMode(DragDrop);
    setDefaultDropAction(Qt::MoveAction);
    setContextMenuPolicy(Qt::ActionsContextMenu);
    const int character = fontMetrics().averageCharWidth();
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(Title, QHeaderView::Stretch);
    header()->setMinimumSectionSize(character * 8);
    header()->resizeSection(Book, character * 18);
    header()->resizeSection(Page, character * 24);
    header()->resizeSection(Anchor, character * 18);
    header()->resizeSection(State, character * 24);
}

void QuickNavLinkTable::addActions()
{
    const auto needsLink = [this](QAction *action) { m_forCurrent.append(action); };
    const auto move = [this](int places) {
        return [this, places] { m_editing.moveLinksBy(m_category, chosenIds(), places); };
    };
    needsLink(addListAction(this, tr("Open page"), "edit"_L1, {}, [this] { openCurrent(); }));
    m_add = addListAction(this, tr("Add link..."), "add"_L1, Qt::Key_Insert,
                          [this] { Q_EMIT addWanted(); });
    needsLink(addListAction(this, tr("Choose another page..."), "page"_L1, Qt::CTRL | Qt::Key_R,
                            [this] { Q_EMIT retargetWanted(); }));
    needsLink(
        addListAction(this, tr("Change title"), "edit"_L1, Qt::Key_F2, [this] { edit(Title); }));
    needsLink(addListAction(this, tr("Change place in the page"), "link"_L1, Qt::SHIFT | Qt::Key_F2,
                            [this] { edit(Anchor); }));
    needsLink(addListAction(this, tr("Delete"), "delete"_L1, QKeySequence::Delete,
                            [this] { removeChosen(); }));
    needsLink(addListAction(this, tr("Move up"), "up"_L1, Qt::ALT | Qt::Key_Up, move(-1)));
    needsLink(addListAction(this, tr("Move down"), "down"_L1, Qt::ALT | Qt::Key_Down, move(1)));
    needsLink(
        addListAction(this, tr("Cut"), ""_L1, QKeySequence::Cut, [this] { toClipboard(true); }));
    needsLink(addListAction(this, tr("Copy"), "copy"_L1, QKeySequence::Copy,
                            [this] { toClipboard(false); }));
    m_paste = addListAction(this, tr("Paste links or pages"), ""_L1, QKeySequence::Paste,
                            [this] { paste(); });
}

void QuickNavLinkTable::enableActions()
{
    for (QAction *action : std::as_const(m_forCurrent))
        action->setEnabled(currentItem() != nullptr);
    m_add->setEnabled(m_category.level >= 0);
    const QMimeData *mime = QGuiApplication::clipboard()->mimeData();
    const bool hasLinks = itemsIn(mime, m_session.folder()).level == QuickNavItems::linkLevel;
    m_paste->setEnabled(m_category.level >= 0
                        && (hasLinks || nodesIn(mime).arePagesOf(m_session.folder())));
    Q_EMIT currentChanged();
}

void QuickNavLinkTable::showLinks(const QuickNavRef &category)
{
    m_isWaiting = state() == EditingState && category == m_category;
    if (m_isWaiting)
        return;
    const QStringList chosen = chosenIds();
    const QString current = currentLink().value_or(QuickNavLink()).id;
    const int row = indexOfTopLevelItem(currentItem());
    const bool isSame = category == m_category;
    m_category = category;
    const QuickNavNode *node = QuickNavTree::find(m_editing.contents().nav(), category);
    const QSignalBlocker quiet(this);
    clear();
    m_links = node != nullptr ? node->links : QList<QuickNavLink>();
    QTreeWidgetItem *again = nullptr;
    for (const QuickNavLink &link : std::as_const(m_links)) {
        QTreeWidgetItem *item = itemFor(link);
        if (link.id == current)
            again = item;
    }
    if (again == nullptr && isSame && row >= 0) // it has gone: its neighbour
        again = topLevelItem(std::min(row, topLevelItemCount() - 1));
    setCurrentItem(again);
    for (int i = 0; i < topLevelItemCount(); ++i) {
        if (chosen.contains(m_links.at(i).id))
            topLevelItem(i)->setSelected(true);
    }
    enableActions();
}

QTreeWidgetItem *QuickNavLinkTable::itemFor(const QuickNavLink &link)
{
    const LinkTarget target = m_editing.contents().targetOf(link);
    const QString state = target.isDead() ? u"\u26A0 "_s + target.word() : target.word();
    auto *item = new QTreeWidgetItem(this, {link.title.isEmpty() ? target.page : link.title,
                                            target.book, target.page, link.anchor, state});
    item->setFlags((item->flags() | Qt::ItemIsEditable) & ~Qt::ItemIsDropEnabled);
    item->setIcon(Title, icon(target.isDead() ? "page-missing"_L1 : "link"_L1));
    item->setData(Title, Qt::AccessibleTextRole,
                  tr("%1, page %2 of %3, %4")
                      .arg(item->text(Title), target.page, target.book, target.word()));
    for (int column = Title; column <= State; ++column) {
        item->setToolTip(column, item->text(column));
        if (target.isDead() && column != Title)
            item->setForeground(column, problemColour(palette()));
    }
    if (!target.path.isEmpty())
        item->setToolTip(Page, m_session.shownPath(m_session.folder() + target.path));
    return item;
}

std::optional<QuickNavLink> QuickNavLinkTable::currentLink() const
{
    const int row = indexOfTopLevelItem(currentItem());
    return row >= 0 && row < m_links.size() ? std::optional(m_links.at(row)) : std::nullopt;
}

QStringList QuickNavLinkTable::chosenIds() const
{
    QStringList ids;
    for (int row = 0; row < topLevelItemCount() && row < m_links.size(); ++row) {
        if (topLevelItem(row)->isSelected())
            ids.append(m_links.at(row).id);
    }
    return ids;
}

QStringList QuickNavLinkTable::anchorsFor(int row) const
{
    const LinkTarget target = m_editing.contents().targetOf(m_links.value(row));
    const IndexedPage *page = m_session.pages().latest().page(target.path);
    return page != nullptr ? page->anchors : QStringList();
}

void QuickNavLinkTable::edit(Column column)
{
    if (currentItem() != nullptr)
        editItem(currentItem(), column);
}

void QuickNavLinkTable::closeEditor(QWidget *editor, QAbstractItemDelegate::EndEditHint hint)
{
    QTreeWidget::closeEditor(editor, hint);
    QMetaObject::invokeMethod(this, &QuickNavLinkTable::finishEditing, Qt::QueuedConnection);
}

void QuickNavLinkTable::finishEditing()
{
    const std::optional<Typed> typed = std::exchange(m_typed, std::nullopt);
    if (typed && typed->text != typed->shown) {
        if (typed->column == Anchor)
            m_editing.changeAnchor(typed->link, typed->text);
        else
            m_editing.changeTitle(typed->link, typed->text);
    }
    if (m_isWaiting)
        showLinks(m_category);
}

void QuickNavLinkTable::removeChosen()
{
    if (const QStringList ids = chosenIds(); !ids.isEmpty())
        m_editing.removeLinks(m_category, ids);
}

void QuickNavLinkTable::openCurrent()
{
    const std::optional<QuickNavLink> link = currentLink();
    if (!link)
        return;
    const TocBook *book = m_editing.contents().targets().bookOf(*link);
    const LinkTarget target = m_editing.contents().targetOf(*link);
    if (book == nullptr || target.state == LinkTarget::State::NoPage) {
        Q_EMIT m_session.done(tr("This link leads nowhere: %1.").arg(target.word()));
        return;
    }
    const TocBook chosen = *book; // the list may change while the page is left
    handled(m_session.program(), [&] {
        if (m_session.select(chosen, link->page))
            Q_EMIT m_session.openRequested();
    });
}

void QuickNavLinkTable::toClipboard(bool cut)
{
    auto *mime = new QMimeData;
    putItems(*mime, {m_session.folder(), QuickNavItems::linkLevel, chosenIds(), cut});
    QGuiApplication::clipboard()->setMimeData(mime);
}

void QuickNavLinkTable::paste()
{
    const QMimeData *mime = QGuiApplication::clipboard()->mimeData();
    const int row = indexOfTopLevelItem(currentItem());
    const int place = row < 0 ? -1 : row + 1;
    if (addPages(m_category, mime, place))
        return;
    const QuickNavItems items = itemsIn(mime, m_session.folder());
    if (items.level != QuickNavItems::linkLevel)
        return;
    m_editing.put(items, m_category, place, !items.cut);
    if (items.cut)
        QGuiApplication::clipboard()->clear(); // they can be moved there once
}

// The data goes with the drag; what is done with it waits until that is over.
bool QuickNavLinkTable::addPages(const QuickNavRef &category, const QMimeData *mime, int place)
{
    const DraggedNodes nodes = nodesIn(mime);
    if (!nodes.arePagesOf(m_session.folder()))
        return false;
    QList<QuickNavLink> links;
    for (const DraggedNode &dragged : nodes.nodes)
        links.append({dragged.node.book->acronym, dragged.node.page, dragged.title, {}});
    QMetaObject::invokeMethod(
        this, [=, this] { m_editing.addLinks(category, links, place); }, Qt::QueuedConnection);
    return true;
}

void QuickNavLinkTable::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        openCurrent();
    else
        QTreeWidget::keyPressEvent(event);
}

// Without a chosen row the keys would have nothing to work on.
void QuickNavLinkTable::focusInEvent(QFocusEvent *event)
{
    QTreeWidget::focusInEvent(event);
    if (currentItem() == nullptr && event->reason() != Qt::MouseFocusReason)
        setCurrentItem(topLevelItem(0));
}

QStringList QuickNavLinkTable::mimeTypes() const
{
    return {quickNavMimeType, projectMimeType};
}

QMimeData *QuickNavLinkTable::mimeData(const QList<QTreeWidgetItem *> &) const
{
    auto *mime = new QMimeData;
    putItems(*mime, {m_session.folder(), QuickNavItems::linkLevel, chosenIds()});
    return mime;
}

Qt::DropActions QuickNavLinkTable::supportedDropActions() const
{
    return Qt::MoveAction | Qt::CopyAction;
}

std::optional<int> QuickNavLinkTable::dropAt(const QDropEvent &event) const
{
    const bool areLinks =
        itemsIn(event.mimeData(), m_session.folder()).level == QuickNavItems::linkLevel;
    if (m_category.level < 0
        || (!areLinks && !nodesIn(event.mimeData()).arePagesOf(m_session.folder())))
        return {};
    const QModelIndex at = indexAt(event.position().toPoint());
    if (!at.isValid())
        return -1;
    const bool upperHalf = event.position().y() < visualRect(at).center().y();
    return at.row() + (upperHalf ? 0 : 1);
}

void QuickNavLinkTable::dragMoveEvent(QDragMoveEvent *event)
{
    QTreeWidget::dragMoveEvent(event); // shows where
    event->setAccepted(dropAt(*event).has_value());
}

// Nothing is left to be removed here, so that the view is told of a copy.
void QuickNavLinkTable::dropEvent(QDropEvent *event)
{
    const std::optional<int> place = dropAt(*event);
    setState(NoState);
    if (!place)
        return event->ignore();
    const bool copy = event->modifiers().testFlag(Qt::ControlModifier);
    event->setDropAction(Qt::CopyAction);
    event->accept();
    if (addPages(m_category, event->mimeData(), *place))
        return;
    const QuickNavItems items = itemsIn(event->mimeData(), m_session.folder());
    QMetaObject::invokeMethod(
        this, [=, this] { m_editing.put(items, m_category, *place, copy); }, Qt::QueuedConnection);
}
