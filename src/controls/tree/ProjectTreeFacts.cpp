#include "controls/tree/ProjectTreeModel.h"

#include "platform/Paths.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QTextDocument>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
bool linksTo(const QuickNavNode &node, const QString &acronym, const QString &pageId)
{
    return std::any_of(node.links.cbegin(), node.links.cend(), [&](const QuickNavLink &link) {
        return link.page == pageId && link.book.compare(acronym, Qt::CaseInsensitive) == 0;
    });
}
} // namespace

// What the nodes of the project tree stand for, and where they are.

TreeKind ProjectTreeModel::kind(const QModelIndex &index) const
{
    return nodeAt(index)->kind;
}

QString ProjectTreeModel::name(const QModelIndex &index) const
{
    return nodeAt(index)->name;
}

const TocBook *ProjectTreeModel::book(const QModelIndex &index) const
{
    const qsizetype book = nodeAt(index)->book;
    return book < 0 || book >= m_session.books().size() ? nullptr : &m_session.books().at(book);
}

QString ProjectTreeModel::pageId(const QModelIndex &index) const
{
    const TreeNode *node = nodeAt(index);
    return node->kind == TreeKind::Page ? node->id : QString();
}

QStringList ProjectTreeModel::quickNavNames(const QModelIndex &index) const
{
    QStringList names;
    for (const TreeNode *node = nodeAt(index);
         node->kind >= TreeKind::View && node->kind <= TreeKind::Category; node = node->parent)
        names.prepend(node->name);
    return names;
}

std::optional<ProjectRequest::Node> ProjectTreeModel::requestNode(const QModelIndex &index) const
{
    using Kind = ProjectRequest::Node::Kind;
    const TreeNode *node = nodeAt(index);
    if (!index.isValid() || node->kind == TreeKind::Problem)
        return {};
    switch (node->kind) {
    case TreeKind::Project:
        return ProjectRequest::Node{Kind::Project};
    case TreeKind::Globals:
        return ProjectRequest::Node{Kind::Globals};
    case TreeKind::GlobalPage:
        return ProjectRequest::Node{.kind = Kind::GlobalPage, .page = node->id};
    case TreeKind::Books:
        return ProjectRequest::Node{Kind::Books};
    case TreeKind::Book:
    case TreeKind::Page: {
        const TocBook *entry = book(index);
        if (entry == nullptr)
            return {};
        return ProjectRequest::Node{.kind = node->kind == TreeKind::Book ? Kind::Book : Kind::Page,
                                    .book = *entry,
                                    .page = pageId(index)};
    }
    default: // its id tells it from a twin of the same name
        return ProjectRequest::Node{.kind = Kind::QuickNav,
                                    .page = node->kind == TreeKind::QuickNav ? QString() : node->id,
                                    .path = quickNavNames(index)};
    }
}

QString ProjectTreeModel::folderOf(const TreeNode &node) const
{
    if (node.book < 0 || node.book >= m_session.books().size())
        return ProjectFile::globalFolder;
    return withoutBackslash(QString(m_session.books().at(node.book).folder).replace(u'/', u'\\'));
}

QString ProjectTreeModel::relativePath(const TreeNode &node) const
{
    const QString base = m_session.folder();
    const auto full = insideOf(base + folderOf(node), node.detail);
    return full && insideOf(base, folderOf(node)) ? full->mid(base.size()) : QString();
}

QString ProjectTreeModel::path(const QModelIndex &index) const
{
    const TreeNode &node = *nodeAt(index);
    const QString base = m_session.folder();
    switch (node.kind) {
    case TreeKind::Project:
    case TreeKind::Books:
        return base;
    case TreeKind::Globals:
        return base + ProjectFile::globalFolder;
    case TreeKind::Book:
        return insideOf(base, folderOf(node)).value_or(QString());
    case TreeKind::GlobalPage:
    case TreeKind::Page: {
        const QString relative = relativePath(node);
        return relative.isEmpty() ? QString() : base + relative;
    }
    case TreeKind::QuickNav:
        return base + ProjectFile::quickNav;
    default:
        return {};
    }
}

TreeBadgeList ProjectTreeModel::badges(const TreeNode &node) const
{
    switch (node.kind) {
    case TreeKind::Globals:
    case TreeKind::Book:
        return m_badges->ofFolder(folderOf(node));
    case TreeKind::GlobalPage:
    case TreeKind::Page:
        return m_badges->ofPage(relativePath(node));
    default:
        return {};
    }
}

bool ProjectTreeModel::isLocked(const QModelIndex &index) const
{
    const TreeKind kind = nodeAt(index)->kind;
    return (kind == TreeKind::Page || kind == TreeKind::GlobalPage)
           && m_badges->isLocked(relativePath(*nodeAt(index)));
}

void ProjectTreeModel::followClipboard()
{
    DraggedNodes nodes = nodesIn(QGuiApplication::clipboard()->mimeData());
    m_cut = nodes.cut ? std::move(nodes) : DraggedNodes();
    Q_EMIT cutChanged();
}

bool ProjectTreeModel::isCut(const QModelIndex &index) const
{
    if (m_cut.nodes.isEmpty() || m_cut.projectFolder != m_session.folder())
        return false;
    const auto node = requestNode(index);
    return node && std::any_of(m_cut.nodes.cbegin(), m_cut.nodes.cend(), [&](const auto &cut) {
               return isSameNode(cut.node, *node);
           });
}

QString ProjectTreeModel::spokenText(const QModelIndex &index) const
{
    const TreeNode &node = *nodeAt(index);
    QStringList parts{TreeLooks::spokenName(node)};
    if (isCut(index))
        parts.append(tr("cut"));
    if (const QString remarks = wordsOf(badges(node)); !remarks.isEmpty())
        parts.append(remarks);
    return parts.join(", "_L1);
}

// The name stands here whole; in the row it may be shortened.
QString ProjectTreeModel::toolTip(const QModelIndex &index) const
{
    const TreeNode &node = *nodeAt(index);
    QStringList lines{TreeLooks::shownName(node)};
    if (const QString place = path(index); !place.isEmpty())
        lines.append(m_session.shownPath(place));
    for (const TreeBadge &badge : badges(node))
        lines.append(badge.words());
    const QString text = lines.join(u'\n');
    return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text) : text;
}

QStringList ProjectTreeModel::place(const QModelIndex &index) const
{
    QStringList ids;
    for (const TreeNode *node = nodeAt(index); node != m_root.get(); node = node->parent)
        ids.prepend(node->id);
    return ids;
}

QModelIndex ProjectTreeModel::find(const QStringList &place)
{
    QModelIndex at;
    for (const QString &id : place) {
        fetchMore(at);
        const TreeNodes &children = nodeAt(at)->children;
        const auto found = std::find_if(children.cbegin(), children.cend(),
                                        [&](const auto &child) { return child->id == id; });
        if (found == children.cend())
            return {};
        at = indexOf(found->get());
    }
    return at;
}

QModelIndex ProjectTreeModel::find(const TocBook &book, const QString &pageId)
{
    const QModelIndex at = find({u"project"_s, u"books"_s, identityOf(book)});
    if (!at.isValid() || pageId.isEmpty())
        return at;
    fetchMore(at);
    QList<const TreeNode *> waiting{nodeAt(at)};
    while (!waiting.isEmpty()) {
        for (const auto &child : waiting.takeLast()->children) {
            if (child->id == pageId)
                return indexOf(child.get());
            waiting.append(child.get());
        }
    }
    return at;
}

QModelIndex ProjectTreeModel::section(TreeKind kind) const
{
    for (const auto &top : m_root->children) {
        for (const auto &part : top->children) {
            if (part->kind == kind)
                return indexOf(part.get());
        }
    }
    return {};
}

QList<QModelIndex> ProjectTreeModel::categoriesWith(const QString &acronym, const QString &pageId)
{
    QList<QModelIndex> found;
    const QModelIndex top = section(TreeKind::QuickNav);
    const QList<QuickNavNode> &views = m_session.quickNav().views;
    fetchMore(top);
    // The rows stand as the file has them.
    const std::function<void(const QList<QuickNavNode> &, const QModelIndex &)> look =
        [&](const QList<QuickNavNode> &nodes, const QModelIndex &parent) {
            for (int row = 0; row < std::min<int>(static_cast<int>(nodes.size()), rowCount(parent));
                 ++row) {
                const QModelIndex at = index(row, 0, parent);
                if (linksTo(nodes.at(row), acronym, pageId))
                    found.append(at);
                look(nodes.at(row).children, at);
            }
        };
    look(views, top);
    return found;
}
