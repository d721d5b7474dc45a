#include "controls/tree/ProjectTreeModel.h"

#include "controls/tree/TreeDrops.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QPalette>

#include <algorithm>

using namespace Qt::StringLiterals;

ProjectTreeModel::ProjectTreeModel(ProjectSession &session, QObject *parent)
    : QAbstractItemModel(parent)
    , m_session(session)
    , m_builder(session)
    , m_badges(new TreeBadges(session, this))
    , m_root(std::make_unique<TreeNode>())
{
    connect(m_badges, &TreeBadges::changed, this, &ProjectTreeModel::badgesChanged);
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this,
            &ProjectTreeModel::followClipboard);
    followClipboard();
    rebuild();
}

ProjectTreeModel::~ProjectTreeModel() = default;

void ProjectTreeModel::rebuild()
{
    beginResetModel();
    m_root = std::make_unique<TreeNode>();
    adopt(*m_root, m_builder.project());
    markMatches(m_words);
    endResetModel();
}

void ProjectTreeModel::rebuild(const QModelIndex &node)
{
    TreeNode &parent = *nodeAt(node);
    if (!node.isValid() || !parent.fetched)
        return;
    if (!parent.children.empty()) {
        beginRemoveRows(node, 0, static_cast<int>(parent.children.size()) - 1);
        parent.children.clear();
        endRemoveRows();
    }
    parent.fetched = false;
    fetchMore(node);
    markMatches(m_words);
}

bool ProjectTreeModel::canFetchMore(const QModelIndex &parent) const
{
    return parent.isValid() && !nodeAt(parent)->fetched;
}

void ProjectTreeModel::fetchMore(const QModelIndex &parent)
{
    if (!canFetchMore(parent))
        return;
    TreeNode &node = *nodeAt(parent);
    node.fetched = true;
    TreeNodes nodes = node.kind == TreeKind::Books ? m_builder.books() : m_builder.contentsOf(node);
    if (nodes.empty())
        return;
    for (const auto &child : nodes)
        ::markMatches(*child, m_words, node.matches);
    beginInsertRows(parent, 0, static_cast<int>(nodes.size()) - 1);
    adopt(node, std::move(nodes));
    endInsertRows();
}

QModelIndex ProjectTreeModel::index(int row, int column, const QModelIndex &parent) const
{
    const TreeNode *node = nodeAt(parent);
    if (column != 0 || row < 0 || static_cast<size_t>(row) >= node->children.size())
        return {};
    return createIndex(row, 0, node->children[static_cast<size_t>(row)].get());
}

QModelIndex ProjectTreeModel::parent(const QModelIndex &child) const
{
    return child.isValid() ? indexOf(nodeAt(child)->parent) : QModelIndex();
}

int ProjectTreeModel::rowCount(const QModelIndex &parent) const
{
    return static_cast<int>(nodeAt(parent)->children.size());
}

int ProjectTreeModel::columnCount(const QModelIndex &) const
{
    return 1;
}

bool ProjectTreeModel::hasChildren(const QModelIndex &parent) const
{
    const TreeNode *node = nodeAt(parent);
    return !node->fetched || !node->children.empty();
}

QVariant ProjectTreeModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const TreeNode &node = *nodeAt(index);
    switch (role) {
    case Qt::DisplayRole:
        return TreeLooks::shownName(node);
    case Qt::DecorationRole:
        return m_looks.iconOf(node.kind);
    case Qt::AccessibleTextRole:
        return spokenText(index);
    case Qt::ForegroundRole:
        return isCut(index) ? QGuiApplication::palette().brush(QPalette::PlaceholderText)
                            : QVariant();
    case Qt::ToolTipRole:
        return toolTip(index);
    case BadgesRole:
        return QVariant::fromValue(badges(node));
    default:
        return {};
    }
}

Qt::ItemFlags ProjectTreeModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return {};
    const Qt::ItemFlags usual = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    switch (nodeAt(index)->kind) {
    case TreeKind::Problem:
        return usual | Qt::ItemNeverHasChildren;
    case TreeKind::Project:
        return usual;
    case TreeKind::Globals:
    case TreeKind::Books:
    case TreeKind::QuickNav:
        return usual | Qt::ItemIsDropEnabled;
    default:
        return usual | Qt::ItemIsDropEnabled | Qt::ItemIsDragEnabled;
    }
}

Qt::DropActions ProjectTreeModel::supportedDropActions() const
{
    return Qt::MoveAction | Qt::CopyAction | Qt::LinkAction;
}

QStringList ProjectTreeModel::mimeTypes() const
{
    return {projectMimeType, u"text/uri-list"_s};
}

QMimeData *ProjectTreeModel::mimeData(const QModelIndexList &indexes) const
{
    auto *mime = new QMimeData;
    putNodes(*mime, draggedNodes(*this, indexes, m_session.folder()));
    return mime;
}

bool ProjectTreeModel::canDropMimeData(const QMimeData *data, Qt::DropAction, int row, int,
                                       const QModelIndex &parent) const
{
    return droppedOn(*this, m_session, data, {parent, row}).has_value();
}

bool ProjectTreeModel::dropMimeData(const QMimeData *data, Qt::DropAction, int row, int,
                                    const QModelIndex &parent)
{
    const auto request = droppedOn(*this, m_session, data, {parent, row});
    if (request)
        Q_EMIT dropped(*request);
    return request.has_value();
}

int ProjectTreeModel::markMatches(const QStringList &words)
{
    m_words = words;
    return ::markMatches(*m_root, words, false);
}

bool ProjectTreeModel::isKept(const QModelIndex &index) const
{
    return nodeAt(index)->isKept;
}

bool ProjectTreeModel::leadsToMatch(const QModelIndex &index) const
{
    const TreeNode *node = nodeAt(index);
    return node->found > (node->matches ? 1 : 0);
}

QModelIndex ProjectTreeModel::nextUnread() const
{
    for (const auto &top : m_root->children) {
        for (const auto &part : top->children) {
            if (!part->fetched)
                return indexOf(part.get());
            const auto unread = std::find_if(part->children.cbegin(), part->children.cend(),
                                             [](const auto &node) { return !node->fetched; });
            if (unread != part->children.cend())
                return indexOf(unread->get());
        }
    }
    return {};
}

TreeNode *ProjectTreeModel::nodeAt(const QModelIndex &index) const
{
    return index.isValid() ? static_cast<TreeNode *>(index.internalPointer()) : m_root.get();
}

QModelIndex ProjectTreeModel::indexOf(const TreeNode *node) const
{
    if (node == nullptr || node == m_root.get())
        return {};
    return createIndex(node->row, 0, const_cast<TreeNode *>(node));
}
