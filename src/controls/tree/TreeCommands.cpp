#include "controls/tree/TreeCommands.h"

#include "controls/parts/Handler.h"
#include "controls/tree/ProjectTreeModel.h"
#include "controls/tree/TreeDrops.h"
#include "resources/Icons.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
bool isOneOf(TreeKind kind, std::initializer_list<TreeKind> kinds)
{
    return std::find(kinds.begin(), kinds.end(), kind) != kinds.end();
}

bool isQuickNavPart(TreeKind kind)
{
    return kind >= TreeKind::View && kind <= TreeKind::Category;
}

bool isPageOfAny(TreeKind kind)
{
    return isOneOf(kind, {TreeKind::Page, TreeKind::GlobalPage});
}

bool canBeMoved(TreeKind kind)
{
    return kind == TreeKind::Book || isPageOfAny(kind) || isQuickNavPart(kind);
}

bool canBeRenamed(TreeKind kind)
{
    return kind == TreeKind::Project || canBeMoved(kind);
}

// The keys of all commands; other keys must cost nothing.
namespace TreeKey {
constexpr QKeyCombination open(Qt::Key_Return);
constexpr QKeyCombination add(Qt::Key_Insert);
constexpr QKeyCombination rename(Qt::Key_F2);
constexpr QKeyCombination remove(Qt::Key_Delete);
constexpr QKeyCombination up(Qt::ALT, Qt::Key_Up);
constexpr QKeyCombination down(Qt::ALT, Qt::Key_Down);
constexpr QKeyCombination promote(Qt::ALT, Qt::Key_Left);
constexpr QKeyCombination demote(Qt::ALT, Qt::Key_Right);
constexpr QKeyCombination cut(Qt::CTRL, Qt::Key_X);
constexpr QKeyCombination copy(Qt::CTRL, Qt::Key_C);
constexpr QKeyCombination paste(Qt::CTRL, Qt::Key_V);
constexpr QKeyCombination pasteBelow(Qt::CTRL | Qt::SHIFT, Qt::Key_V);
constexpr QKeyCombination copyPath(Qt::CTRL | Qt::SHIFT, Qt::Key_C);
constexpr QKeyCombination filter(Qt::CTRL, Qt::Key_F);
constexpr QKeyCombination refresh(Qt::Key_F5);
constexpr QKeyCombination all[]{open, add,  rename, remove,     up,       down,   promote, demote,
                                cut,  copy, paste,  pasteBelow, copyPath, filter, refresh};
} // namespace TreeKey

QKeyCombination keyOf(const QKeyEvent &event)
{
    const int key = event.key() == Qt::Key_Enter ? static_cast<int>(Qt::Key_Return) : event.key();
    return QKeyCombination(event.modifiers() & ~Qt::KeypadModifier, static_cast<Qt::Key>(key));
}
} // namespace

TreeCommands::TreeCommands(ProjectSession &session, ProjectTreeModel &model, QObject *parent)
    : QObject(parent)
    , m_session(session)
    , m_model(model)
{
}

void TreeCommands::fill(QMenu &menu)
{
    menu.setToolTipsVisible(true);
    QList<TreeCommand> list = commands();
    if (m_model.kind(node()) == TreeKind::Page)
        addUses(list);
    for (const TreeCommand &command : list) {
        if (command.text.isEmpty()) {
            menu.addSeparator();
            continue;
        }
        QAction *action = menu.addAction(icon(command.icon), command.text, this, command.run);
        action->setShortcut(command.key);
        action->setShortcutVisibleInContextMenu(true);
        action->setEnabled(command.whyNot.isEmpty());
        action->setToolTip(command.whyNot);
    }
}

bool TreeCommands::isCommandKey(const QKeyEvent &key)
{
    return std::find(std::begin(TreeKey::all), std::end(TreeKey::all), keyOf(key))
           != std::end(TreeKey::all);
}

bool TreeCommands::obey(const QKeyEvent &key)
{
    if (!isCommandKey(key))
        return false;
    for (const TreeCommand &command : commands()) {
        if (command.key != QKeySequence(keyOf(key)))
            continue;
        if (command.whyNot.isEmpty())
            command.run();
        else
            Q_EMIT m_session.done(command.whyNot);
        return true;
    }
    return false;
}

QList<TreeCommand> TreeCommands::commands()
{
    QList<TreeCommand> list;
    const auto separate = [&] {
        if (!list.isEmpty() && !list.last().text.isEmpty())
            list.append(TreeCommand());
    };
    if (node().isValid() && m_model.kind(node()) != TreeKind::Problem) {
        addEditing(list);
        separate();
        addMoving(list);
        separate();
        addClipboard(list);
        separate();
    }
    addLooking(list);
    return list;
}

void TreeCommands::addEditing(QList<TreeCommand> &list)
{
    const TreeKind kind = m_model.kind(node());
    const QString many = reasonAgainstMany();
    list.append({tr("&Open"), "edit"_L1, TreeKey::open, many, [this] { Q_EMIT openRequested(); }});
    if (const QString text = newText(); !text.isEmpty())
        list.append(asking(Action::New, text, "add"_L1, TreeKey::add, many));
    if (canBeRenamed(kind))
        list.append(asking(Action::Rename,
                           kind == TreeKind::Project ? tr("Rena&me project...") : tr("Rena&me..."),
                           "edit"_L1, TreeKey::rename, many));
    if (isPageOfAny(kind))
        list.append(asking(Action::RenameFile, tr("Rename &file..."), {}, {}, many));
    if (canBeMoved(kind))
        list.append(asking(Action::Delete, tr("&Delete..."), "delete"_L1, TreeKey::remove,
                           kind == TreeKind::Page || isQuickNavPart(kind) ? QString() : many));
    if (isPageOfAny(kind) && m_model.isLocked(node()))
        list.append(asking(Action::Unlock, tr("Unloc&k page"), "unlock"_L1, {}, many));
}

void TreeCommands::addMoving(QList<TreeCommand> &list)
{
    const TreeKind kind = m_model.kind(node());
    const auto add = [&](Action action, const QString &text, QLatin1StringView icon,
                         QKeyCombination key) {
        list.append(asking(action, text, icon, key, reasonAgainstMoving(action)));
    };
    if (!canBeMoved(kind))
        return;
    add(Action::MoveUp, tr("Move &up"), "up"_L1, TreeKey::up);
    add(Action::MoveDown, tr("Move do&wn"), "down"_L1, TreeKey::down);
    if (kind != TreeKind::Page)
        return;
    add(Action::Promote, tr("&Promote"), "left"_L1, TreeKey::promote);
    add(Action::Demote, tr("D&emote"), "right"_L1, TreeKey::demote);
}

void TreeCommands::addClipboard(QList<TreeCommand> &list)
{
    if (canBeMoved(m_model.kind(node()))) {
        list.append({tr("Cu&t"), {}, TreeKey::cut, {}, [this] { toClipboard(true); }});
        list.append({tr("&Copy"), "copy"_L1, TreeKey::copy, {}, [this] { toClipboard(false); }});
    }
    const QMimeData *mime = QGuiApplication::clipboard()->mimeData();
    const auto offer = [&](const QString &text, const QKeySequence &key,
                           const std::optional<ProjectRequest> &request) {
        const QString whyNot =
            request ? QString() : tr("What is on the clipboard does not belong here.");
        list.append({text, {}, key, whyNot, [this, request] {
                         handled(m_session.program(),
                                 [&] { Q_EMIT m_session.requested(*request); });
                         if (request->action == Action::MoveTo)
                             QGuiApplication::clipboard()->clear();
                     }});
    };
    offer(tr("Pa&ste"), TreeKey::paste, pastedAt(m_model, m_session, mime, node()));
    if (m_model.kind(node()) == TreeKind::Page)
        offer(tr("Paste &below"), TreeKey::pasteBelow,
              nodesIn(mime).cut ? droppedOn(m_model, m_session, mime, {node(), -1}) : std::nullopt);
}

// The categories of the quick navigation that lead to the chosen page.
void TreeCommands::addUses(QList<TreeCommand> &list)
{
    constexpr qsizetype mostShown = 8;
    const QString acronym = m_model.book(node())->acronym, page = m_model.pageId(node());
    QList<QModelIndex> uses;
    trap([](const QvError &) {}, [&] { uses = m_model.categoriesWith(acronym, page); });
    list.append(TreeCommand());
    if (uses.isEmpty())
        list.append({tr("Show in &quick navigation"),
                     "quicknav"_L1,
                     {},
                     tr("No category links to this page."),
                     [] {}});
    for (const QModelIndex &use : uses.first(std::min(uses.size(), mostShown))) {
        const QString where = m_model.quickNavNames(use).join(u" > "_s).replace(u'&', u"&&"_s);
        const QString text = uses.size() == 1 ? tr("Show in &quick navigation")
                                              : tr("Show in quick navigation: %1").arg(where);
        list.append({text, "quicknav"_L1, {}, {}, [this, use = QPersistentModelIndex(use)] {
                         Q_EMIT showRequested(use);
                     }});
    }
}

void TreeCommands::addLooking(QList<TreeCommand> &list)
{
    const QString path = node().isValid() ? m_model.path(node()) : QString();
    list.append(
        {tr("E&xpand all below"),
         {},
         {},
         node().isValid() && m_model.hasChildren(node()) ? QString() : tr("Nothing lies below it."),
         [this] { Q_EMIT expandRequested(); }});
    list.append({tr("Co&llapse all"), {}, {}, {}, [this] { Q_EMIT collapseRequested(); }});
    list.append(
        {tr("F&ilter"), "filter"_L1, TreeKey::filter, {}, [this] { Q_EMIT findRequested(); }});
    list.append({tr("&Refresh"), "refresh"_L1, TreeKey::refresh, {}, [this] {
                     Q_EMIT refreshRequested();
                 }});
    list.append({tr("Cop&y path"),
                 {},
                 TreeKey::copyPath,
                 path.isEmpty() ? tr("It is no file or folder.") : QString(),
                 [this, path] {
                     QGuiApplication::clipboard()->setText(m_session.shownPath(path));
                     Q_EMIT m_session.done(tr("The path was copied."));
                 }});
}

TreeCommand TreeCommands::asking(Action action, const QString &text, QLatin1StringView icon,
                                 const QKeySequence &key, const QString &whyNot)
{
    return {text, icon, key, whyNot,
            [this, action] { handled(m_session.program(), [&] { ask(action); }); }};
}

QModelIndex TreeCommands::node() const
{
    return m_nodes.isEmpty() ? QModelIndex() : m_nodes.first();
}

QString TreeCommands::newText() const
{
    switch (m_model.kind(node())) {
    case TreeKind::Books:
        return tr("&New book...");
    case TreeKind::Book:
    case TreeKind::Page:
        return tr("&New page...");
    case TreeKind::Globals:
    case TreeKind::GlobalPage:
        return tr("&New global page...");
    case TreeKind::QuickNav:
        return tr("&New view...");
    case TreeKind::View:
        return tr("&New group...");
    case TreeKind::Group:
        return tr("&New topic...");
    case TreeKind::Topic:
        return tr("&New category...");
    default:
        return {};
    }
}

QString TreeCommands::reasonAgainstMany() const
{
    return m_nodes.size() > 1 ? tr("Choose only one.") : QString();
}

QString TreeCommands::reasonAgainstMoving(Action action) const
{
    if (m_nodes.size() > 1)
        return reasonAgainstMany();
    const QModelIndex at = node();
    if (action == Action::MoveDown)
        return at.row() + 1 < m_model.rowCount(at.parent()) ? QString() : tr("It is the last one.");
    if (action == Action::Promote)
        return m_model.kind(at.parent()) == TreeKind::Page ? QString()
                                                           : tr("It is at the top of its book.");
    if (at.row() > 0)
        return {};
    return action == Action::Demote ? tr("No page stands before it.") : tr("It is the first one.");
}

void TreeCommands::ask(Action action)
{
    ProjectRequest request;
    request.action = action;
    for (const QModelIndex &index : std::as_const(m_nodes)) {
        const auto chosen = m_model.requestNode(index);
        if (!chosen)
            return;
        if (index == node())
            request.node = *chosen;
        else if (chosen->kind == request.node.kind)
            request.others.append(*chosen);
    }
    Q_EMIT m_session.requested(request);
}

void TreeCommands::toClipboard(bool cut)
{
    DraggedNodes nodes = draggedNodes(m_model, m_nodes, m_session.folder());
    nodes.cut = cut;
    auto *mime = new QMimeData;
    putNodes(*mime, nodes);
    QGuiApplication::clipboard()->setMimeData(mime);
    const QString what = nodes.nodes.size() == 1
                             ? nodes.nodes.first().title
                             : tr("%n nodes", nullptr, static_cast<int>(nodes.nodes.size()));
    Q_EMIT m_session.done(
        (cut ? tr("Cut: %1. Paste where it shall be.") : tr("Copied: %1.")).arg(what));
}
