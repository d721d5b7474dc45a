#include "controls/tree/TreeDrops.h"

#include "controls/tree/ProjectTreeModel.h"
#include "platform/FileSystem.h"
#include "platform/QvError.h"
#include "tools/import/PageConversion.h"

#include <QMimeData>
#include <QUrl>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
using Node = ProjectRequest::Node;
using Action = ProjectRequest::Action;

bool isBelowAny(const QModelIndex &index, const QModelIndexList &others)
{
    for (QModelIndex at = index.parent(); at.isValid(); at = at.parent()) {
        if (others.contains(at))
            return true;
    }
    return false;
}

QList<int> rowsOnTheWay(QModelIndex index)
{
    QList<int> rows;
    for (; index.isValid(); index = index.parent())
        rows.prepend(index.row());
    return rows;
}

bool standsBefore(const QModelIndex &a, const QModelIndex &b)
{
    const QList<int> first = rowsOnTheWay(a), second = rowsOnTheWay(b);
    return std::lexicographical_compare(first.cbegin(), first.cend(), second.cbegin(),
                                        second.cend());
}

/// Whether nodes of this kind (quick navigation: at this depth) belong below `parent`.
bool belongBelow(const ProjectTreeModel &model, const Node &node, const QModelIndex &parent)
{
    const TreeKind kind = model.kind(parent);
    switch (node.kind) {
    case Node::Kind::Book:
        return kind == TreeKind::Books;
    case Node::Kind::Page:
        return kind == TreeKind::Book || kind == TreeKind::Page;
    case Node::Kind::GlobalPage:
        return kind == TreeKind::Globals;
    case Node::Kind::QuickNav: {
        const bool isPart = kind >= TreeKind::QuickNav && kind < TreeKind::Category;
        return isPart && model.quickNavNames(parent).size() + 1 == node.path.size();
    }
    default:
        return false;
    }
}

/// Whether one node would stay exactly where it is.
bool staysThere(const ProjectTreeModel &model, const Node &node, const TreePlace &place)
{
    const int count = model.rowCount(place.parent);
    const int row = place.row < 0 ? count : place.row;
    for (const int neighbour : {row - 1, row}) {
        const auto there = model.requestNode(model.index(neighbour, 0, place.parent));
        if (there && isSameNode(*there, node))
            return true;
    }
    return false;
}

bool liesIn(const ProjectTreeModel &model, QModelIndex index, const QList<Node> &nodes)
{
    for (; index.isValid(); index = index.parent()) {
        const auto at = model.requestNode(index);
        if (at && std::any_of(nodes.cbegin(), nodes.cend(), [&](const Node &node) {
                return isSameNode(*at, node);
            }))
            return true;
    }
    return false;
}

/// The nodes with their books as the session lists them; nothing when one has gone.
std::optional<QList<Node>> known(ProjectSession &session, const DraggedNodes &dragged)
{
    QList<Node> nodes;
    for (const DraggedNode &one : dragged.nodes) {
        Node node = one.node;
        if (node.book) {
            const auto &books = session.books();
            const auto listed =
                std::find_if(books.cbegin(), books.cend(), [&](const TocBook &book) {
                    return identityOf(book) == identityOf(*node.book);
                });
            if (listed == books.cend())
                return {};
            node.book = *listed;
        }
        if (node.kind != dragged.nodes.first().node.kind)
            return {};
        nodes.append(node);
    }
    return nodes;
}

std::optional<ProjectRequest> nodesOn(const ProjectTreeModel &model, ProjectSession &session,
                                      const DraggedNodes &dragged, const TreePlace &place)
{
    const auto nodes = known(session, dragged);
    const auto target = model.requestNode(place.parent);
    if (!nodes || nodes->isEmpty() || !target || dragged.projectFolder != session.folder())
        return {};
    ProjectRequest request{.action = Action::MoveTo,
                           .node = nodes->first(),
                           .others = nodes->sliced(1),
                           .target = target,
                           .place = place.row < model.rowCount(place.parent) ? place.row : -1};
    if (model.kind(place.parent) == TreeKind::Category && place.row < 0
        && request.node.kind == Node::Kind::Page) {
        request.action = Action::AddLink;
        return request;
    }
    // Only pages are moved several at a time.
    const bool isOne = nodes->size() == 1 || request.node.kind == Node::Kind::Page;
    const bool allowed = isOne && belongBelow(model, request.node, place.parent)
                         && !liesIn(model, place.parent, *nodes)
                         && (nodes->size() > 1 || !staysThere(model, request.node, place));
    return allowed ? std::optional(request) : std::nullopt;
}

/// Where files go that are dropped on a row.
std::optional<Node> takerOf(const ProjectTreeModel &model, const QModelIndex &parent)
{
    if (const TocBook *book = model.book(parent))
        return Node{.kind = Node::Kind::Book, .book = *book};
    const TreeKind kind = model.kind(parent);
    return kind == TreeKind::Globals || kind == TreeKind::GlobalPage
               ? std::optional(Node{.kind = Node::Kind::Globals})
               : std::nullopt;
}

bool isWelcome(FileSystem &files, const QString &path, Node::Kind taker)
{
    if (taker == Node::Kind::Globals)
        return path.endsWith(".htm"_L1, Qt::CaseInsensitive)
               || path.endsWith(".html"_L1, Qt::CaseInsensitive);
    return importFormat(path) != ImportFormat::Other || files.folderExists(path);
}

/// Files and folders of the desktop, into a book; pages, among the global ones.
std::optional<ProjectRequest> filesOn(const ProjectTreeModel &model, ProjectSession &session,
                                      const QMimeData &data, const QModelIndex &parent)
{
    const auto taker = takerOf(model, parent);
    if (!taker)
        return {};
    ProjectRequest request{.action = Action::AddFiles, .node = *taker};
    FileSystem &files = session.program().files;
    for (const QUrl &url : data.urls()) {
        const QString path = url.isLocalFile() ? files.productPath(url.toLocalFile()) : QString();
        if (path.isEmpty() || !isWelcome(files, path, taker->kind))
            return {};
        request.files.append(path);
    }
    return request;
}
} // namespace

DraggedNodes draggedNodes(const ProjectTreeModel &model, QModelIndexList indexes,
                          const QString &projectFolder)
{
    std::sort(indexes.begin(), indexes.end(), standsBefore);
    DraggedNodes dragged{projectFolder, false, {}};
    for (const QModelIndex &index : std::as_const(indexes)) {
        const auto node = model.requestNode(index);
        if (!node || isBelowAny(index, indexes)
            || (!dragged.nodes.isEmpty() && dragged.nodes.first().node.kind != node->kind))
            continue;
        const QString path = model.book(index) == nullptr || !node->page.isEmpty()
                                 ? model.path(index).mid(projectFolder.size())
                                 : QString();
        dragged.nodes.append({*node, path, model.name(index)});
    }
    return dragged;
}

std::optional<ProjectRequest> droppedOn(const ProjectTreeModel &model, ProjectSession &session,
                                        const QMimeData *data, const TreePlace &place)
{
    if (data == nullptr || !place.parent.isValid())
        return {};
    if (data->hasFormat(projectMimeType))
        return nodesOn(model, session, nodesIn(data), place);
    if (!data->hasUrls())
        return {};
    // Some names of the desktop cannot be said here.
    return trap([](const QvError &) {},
                [&] { return filesOn(model, session, *data, place.parent); });
}

std::optional<ProjectRequest> pastedAt(const ProjectTreeModel &model, ProjectSession &session,
                                       const QMimeData *data, const QModelIndex &node)
{
    if (!node.isValid())
        return {};
    auto request = droppedOn(model, session, data, {node.parent(), node.row() + 1});
    if (!request || request->action == Action::AddFiles)
        request = droppedOn(model, session, data, {node, -1});
    const bool onlyCopied = request && request->action == Action::MoveTo && !nodesIn(data).cut;
    return onlyCopied ? std::nullopt : request;
}
