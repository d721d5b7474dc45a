#include "controls/tree/ProjectMime.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMimeData>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
using Node = ProjectRequest::Node;

QJsonObject written(const DraggedNode &dragged)
{
    const TocBook book = dragged.node.book.value_or(TocBook());
    return {{u"kind"_s, static_cast<int>(dragged.node.kind)},
            {u"book"_s, book.acronym},
            {u"bookName"_s, book.name},
            {u"bookFolder"_s, book.folder},
            {u"page"_s, dragged.node.page},
            {u"quickNav"_s, QJsonArray::fromStringList(dragged.node.path)},
            {u"path"_s, dragged.path},
            {u"title"_s, dragged.title}};
}

std::optional<DraggedNode> read(const QJsonObject &object)
{
    const int kind = object.value("kind"_L1).toInt(-1);
    if (kind < 0 || kind > static_cast<int>(Node::Kind::QuickNav))
        return {};
    const auto text = [&](QLatin1StringView name) { return object.value(name).toString(); };
    DraggedNode dragged{{.kind = static_cast<Node::Kind>(kind), .page = text("page"_L1)},
                        text("path"_L1),
                        text("title"_L1)};
    if (dragged.node.kind == Node::Kind::Book || dragged.node.kind == Node::Kind::Page) {
        dragged.node.book = TocBook{.name = text("bookName"_L1),
                                    .acronym = text("book"_L1),
                                    .key = {},
                                    .folder = text("bookFolder"_L1),
                                    .file = {},
                                    .type = {},
                                    .categories = {}};
    }
    for (const QJsonValue &name : object.value("quickNav"_L1).toArray())
        dragged.node.path.append(name.toString());
    return dragged;
}
} // namespace

bool isSameNode(const Node &a, const Node &b)
{
    const bool sameBook = a.book.has_value() == b.book.has_value()
                          && (!a.book || identityOf(*a.book) == identityOf(*b.book));
    return a.kind == b.kind && sameBook && a.page == b.page && a.path == b.path;
}

bool DraggedNodes::arePagesOf(const QString &folder) const
{
    return !nodes.isEmpty() && projectFolder == folder
           && std::all_of(nodes.cbegin(), nodes.cend(), [](const DraggedNode &dragged) {
                  return dragged.node.kind == Node::Kind::Page;
              });
}

void putNodes(QMimeData &mime, const DraggedNodes &nodes)
{
    QJsonArray list;
    for (const DraggedNode &dragged : nodes.nodes)
        list.append(written(dragged));
    const QJsonObject all{
        {u"project"_s, nodes.projectFolder}, {u"cut"_s, nodes.cut}, {u"nodes"_s, list}};
    mime.setData(projectMimeType, QJsonDocument(all).toJson(QJsonDocument::Compact));
}

DraggedNodes nodesIn(const QMimeData *mime)
{
    if (mime == nullptr || !mime->hasFormat(projectMimeType))
        return {};
    const QJsonObject all = QJsonDocument::fromJson(mime->data(projectMimeType)).object();
    DraggedNodes nodes{all.value("project"_L1).toString(), all.value("cut"_L1).toBool(), {}};
    for (const QJsonValue &object : all.value("nodes"_L1).toArray()) {
        if (const auto dragged = read(object.toObject()))
            nodes.nodes.append(*dragged);
    }
    return nodes;
}
