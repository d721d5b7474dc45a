#include "controls/quicknav/NodeList.h"

#include "controls/parts/ListCommands.h"
#include "controls/quicknav/NodeNameDelegate.h"
#include "controls/tree/ProjectMime.h"
#include "resources/Icons.h"

#include <QAction>
#include <QClipboard>
#include <QDropEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMimeData>
#include <QPainter>

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr std::array pictures{"quicknav-view"_L1, "quicknav-group"_L1, "quicknav-topic"_L1,
                              "quicknav-category"_L1};

/// A node as a row: its name, how much there is below it, and what is wrong there.
class NodeItem final : public QListWidgetItem
{
public:
    NodeItem(int level, const QuickNavNode &node, const QuickNavContents::Tally &tally)
        : m_level(level)
        , m_node(node)
        , m_tally(tally)
    {
        setFlags(flags() | Qt::ItemIsEditable);
        setIcon(::icon(pictures.at(static_cast<size_t>(level))));
    }

    [[nodiscard]] const QString &id() const { return m_node.id; }

    [[nodiscard]] QVariant data(int role) const override
    {
        switch (role) {
        case Qt::EditRole:
            return m_node.name;
        case Qt::DisplayRole:
            return m_node.id.isEmpty() ? m_node.name : m_node.name + u" ("_s + count() + u')';
        case Qt::ToolTipRole:
        case Qt::AccessibleTextRole:
            return NodeList::tr("%1 %2, %3")
                .arg(QuickNavTree::word(m_level), m_node.name, inWords());
        default:
            return QListWidgetItem::data(role);
        }
    }

private:
    [[nodiscard]] QString count() const
    {
        const int below = m_level == QuickNavTree::categoryLevel ? m_tally.links : m_tally.children;
        const QString number = QString::number(below);
        return m_tally.dead == 0 ? number
                                 : NodeList::tr("%1, \u26A0 %2 dead").arg(number).arg(m_tally.dead);
    }
    [[nodiscard]] QString inWords() const
    {
        const QString links = QuickNavTree::linkCount(m_tally.links);
        return m_tally.dead == 0 ? links
                                 : NodeList::tr("%1, %2 of them dead").arg(links).arg(m_tally.dead);
    }

    int m_level;
    QuickNavNode m_node;
    QuickNavContents::Tally m_tally;
};

QString titleFor(int level)
{
    const std::array titles{NodeList::tr("New view"), NodeList::tr("New group"),
                            NodeList::tr("New topic"), NodeList::tr("New category")};
    return titles.at(static_cast<size_t>(level));
}

} // namespace

NodeList::NodeList(int level, QuickNavEditing &editing, QWidget *parent)
    : QListWidget(parent)
    , m_level(level)
    , m_editing(editing)
{
    setItemDelegate(new NodeNameDelegate(*this));
    setTextElideMode(Qt::ElideMiddle);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff); // so that long names are elided
    setUniformItemSizes(true);
    setEditTriggers(NoEditTriggers);
    setDragEnabled(true);
    setAcceptDrops(true);
    setDragDropMode(DragDrop);
    setDefaultDropAction(Qt::MoveAction);
    setContextMenuPolicy(Qt::ActionsContextMenu);
    addActions();
    connect(this, &QListWidget::currentRowChanged, this, &NodeList::enableActions);
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, &NodeList::enableActions);
    enableActions();
}

void NodeList::addActions()
{
    m_new = addListAction(this, titleFor(m_level), "add"_L1, Qt::Key_Insert, [this] { editNew(); });
    m_forCurrent = {
        addListAction(this, tr("Rename"), "edit"_L1, Qt::Key_F2,
                      [this] { editItem(currentItem()); }),
        addListAction(this, tr("Delete"), "delete"_L1, QKeySequence::Delete,
                      [this] { m_editing.remove(current()); }),
        addListAction(this, tr("Move up"), "up"_L1, Qt::ALT | Qt::Key_Up,
                      [this] { m_editing.moveBy(current(), -1); }),
        addListAction(this, tr("Move down"), "down"_L1, Qt::ALT | Qt::Key_Down,
                      [this] { m_editing.moveBy(current(), 1); }),
        addListAction(this, tr("Duplicate"), "copy"_L1, Qt::CTRL | Qt::Key_D,
                      [this] { m_editing.copyTo(current(), *m_parent, currentRow() + 1); }),
        addListAction(this, tr("Cut"), ""_L1, QKeySequence::Cut, [this] { toClipboard(true); }),
        addListAction(this, tr("Copy"), ""_L1, QKeySequence::Copy, [this] { toClipboard(false); })};
    m_paste = addListAction(this, tr("Paste"), ""_L1, QKeySequence::Paste, [this] { paste(); });
    addListAction(this, tr("Previous column"), "left"_L1, Qt::ALT | Qt::Key_Left,
                  [this] { Q_EMIT columnWanted(-1); });
    addListAction(this, tr("Next column"), "right"_L1, Qt::ALT | Qt::Key_Right,
                  [this] { Q_EMIT columnWanted(1); });
}

void NodeList::enableActions()
{
    const bool hasCurrent = !current().id.isEmpty();
    for (QAction *action : std::as_const(m_forCurrent))
        action->setEnabled(hasCurrent);
    m_new->setEnabled(m_parent.has_value());
    const int level =
        itemsIn(QGuiApplication::clipboard()->mimeData(), m_editing.contents().session().folder())
            .level;
    m_paste->setEnabled((level == m_level && m_parent) || (level == m_level + 1 && hasCurrent));
}

void NodeList::showNodes(const std::optional<QuickNavRef> &parent, const QList<QuickNavNode> &nodes,
                         const QString &hint)
{
    const QSignalBlocker quiet(this);
    clear();
    m_parent = parent;
    m_hint = hint;
    for (const QuickNavNode &node : nodes)
        addItem(new NodeItem(m_level, node, m_editing.contents().tallyOf({m_level, node.id})));
    setCurrentRow(-1);
    enableActions();
    viewport()->update();
}

QuickNavRef NodeList::refAt(int row) const
{
    const QListWidgetItem *found = item(row);
    return found != nullptr ? QuickNavRef{m_level, static_cast<const NodeItem *>(found)->id()}
                            : QuickNavRef();
}

QuickNavRef NodeList::current() const
{
    return refAt(currentRow());
}

void NodeList::choose(const QString &id, int otherwise)
{
    int found = -1;
    for (int row = 0; row < count() && found < 0 && !id.isEmpty(); ++row) {
        if (refAt(row).id == id)
            found = row;
    }
    setCurrentRow(found < 0 ? std::min(otherwise, count() - 1) : found);
    enableActions();
}

void NodeList::editNew()
{
    if (!m_parent || isEditing())
        return;
    const QString name = QuickNavTree::freeName(
        titleFor(m_level), QuickNavTree::below(m_editing.contents().nav(), *m_parent));
    const int row = currentRow() < 0 ? count() : currentRow() + 1;
    setFocus();
    insertItem(row, new NodeItem(m_level, {{}, name, {}, {}}, {}));
    setCurrentRow(row);
    editItem(item(row));
}

void NodeList::beginEdit(int row)
{
    m_edit = {refAt(row), m_parent.value_or(QuickNavRef()), row};
}

QString NodeList::problemOf(const QString &name) const
{
    return m_edit->node.id.isEmpty() ? m_editing.newNameProblem(m_edit->parent, name)
                                     : m_editing.nameProblem(m_edit->node, name);
}

// The row is still in use by the view while its editor closes: what follows waits until it is not.
void NodeList::closeEditor(QWidget *editor, QAbstractItemDelegate::EndEditHint hint)
{
    QListWidget::closeEditor(editor, hint);
    Q_EMIT nameProblem({});
    QMetaObject::invokeMethod(this, &NodeList::finishEditing, Qt::QueuedConnection);
}

void NodeList::finishEditing()
{
    const std::optional<Edit> edit = std::exchange(m_edit, std::nullopt);
    if (!edit)
        return;
    const bool isNew = edit->node.id.isEmpty();
    if (isNew && edit->row < count() && refAt(edit->row).id.isEmpty())
        delete takeItem(edit->row);
    if (edit->name && isNew)
        m_editing.add(edit->parent, *edit->name, edit->row);
    else if (edit->name)
        m_editing.rename(edit->node, *edit->name);
    Q_EMIT editingEnded();
}

void NodeList::toClipboard(bool cut)
{
    auto *mime = new QMimeData;
    putItems(*mime, {m_editing.contents().session().folder(), m_level, {current().id}, cut});
    mime->setText(QuickNavTree::namesTo(m_editing.contents().nav(), current()).join(u" > "_s));
    QGuiApplication::clipboard()->setMimeData(mime);
}

// Below the current row, or into the chosen node when what is pasted stands one level deeper.
void NodeList::paste()
{
    const QuickNavItems items =
        itemsIn(QGuiApplication::clipboard()->mimeData(), m_editing.contents().session().folder());
    if (items.level == m_level && m_parent)
        take(items, {*m_parent, currentRow() < 0 ? -1 : currentRow() + 1}, !items.cut);
    else if (items.level == m_level + 1 && !current().id.isEmpty())
        take(items, {current(), -1}, !items.cut);
    if (items.cut)
        QGuiApplication::clipboard()->clear(); // it can be moved there once
}

void NodeList::take(const QuickNavItems &items, const Drop &drop, bool copy)
{
    m_editing.put(items, drop.parent, drop.place, copy);
}

void NodeList::keyPressEvent(QKeyEvent *event)
{
    const bool back = event->key() == Qt::Key_Left;
    const bool on = event->key() == Qt::Key_Right || event->key() == Qt::Key_Return
                    || event->key() == Qt::Key_Enter;
    if ((back || on) && event->modifiers() == Qt::NoModifier)
        Q_EMIT columnWanted(back ? -1 : 1);
    else
        QListWidget::keyPressEvent(event);
}

// Without a chosen row the keys would have nothing to work on.
void NodeList::focusInEvent(QFocusEvent *event)
{
    QListWidget::focusInEvent(event);
    const bool byKey = event->reason() == Qt::TabFocusReason
                       || event->reason() == Qt::BacktabFocusReason
                       || event->reason() == Qt::ShortcutFocusReason;
    if (byKey && currentRow() < 0 && count() > 0)
        setCurrentRow(0);
}

void NodeList::paintEvent(QPaintEvent *event)
{
    QListWidget::paintEvent(event);
    if (count() > 0 || m_hint.isEmpty())
        return;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    const int margin = fontMetrics().averageCharWidth();
    painter.drawText(viewport()->rect().adjusted(margin, margin, -margin, -margin),
                     Qt::AlignTop | Qt::AlignLeft | Qt::TextWordWrap, m_hint);
}

QStringList NodeList::mimeTypes() const
{
    return {quickNavMimeType, projectMimeType};
}

QMimeData *NodeList::mimeData(const QList<QListWidgetItem *> &items) const
{
    auto *mime = new QMimeData;
    QuickNavItems dragged{m_editing.contents().session().folder(), m_level};
    for (const QListWidgetItem *item : items)
        dragged.ids.append(refAt(row(item)).id);
    putItems(*mime, dragged);
    return mime;
}

Qt::DropActions NodeList::supportedDropActions() const
{
    return Qt::MoveAction | Qt::CopyAction;
}

std::optional<NodeList::Drop> NodeList::dropAt(const QDropEvent &event) const
{
    const QString folder = m_editing.contents().session().folder();
    const int level = itemsIn(event.mimeData(), folder).level;
    const QModelIndex at = indexAt(event.position().toPoint());
    const bool arePages =
        m_level == QuickNavTree::categoryLevel && nodesIn(event.mimeData()).arePagesOf(folder);
    if (level == m_level + 1 || arePages)
        return at.isValid() ? std::optional(Drop{refAt(at.row()), -1}) : std::nullopt;
    if (level != m_level || !m_parent)
        return {};
    if (!at.isValid())
        return Drop{*m_parent, -1};
    const bool upperHalf = event.position().y() < visualRect(at).center().y();
    return Drop{*m_parent, at.row() + (upperHalf ? 0 : 1)};
}

void NodeList::dragMoveEvent(QDragMoveEvent *event)
{
    QListWidget::dragMoveEvent(event); // shows where
    event->setAccepted(dropAt(*event).has_value());
}

// Done later: a question in the middle of a drag would stop the mouse. Nothing is left to be
// removed here, so that the view is told of a copy.
void NodeList::dropEvent(QDropEvent *event)
{
    const std::optional<Drop> drop = dropAt(*event);
    setState(NoState);
    if (!drop)
        return event->ignore();
    const QuickNavItems items = itemsIn(event->mimeData(), m_editing.contents().session().folder());
    const bool copy = event->modifiers().testFlag(Qt::ControlModifier);
    event->setDropAction(Qt::CopyAction);
    event->accept();
    if (items.level < 0)
        Q_EMIT pagesDropped(drop->parent, event->mimeData());
    else
        QMetaObject::invokeMethod(
            this, [=, this] { take(items, *drop, copy); }, Qt::QueuedConnection);
}
