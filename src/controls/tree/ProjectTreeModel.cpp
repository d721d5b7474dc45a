#include "controls/tree/ProjectTreeModel.h"

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "resources/Icons.h"

#include <algorithm>

using namespace Qt::StringLiterals;

struct ProjectTreeModel::Node
{
    TreeKind kind = TreeKind::Project;
    QString name;
    QString id;          ///< what tells it from its neighbours
    QString file;        ///< of a page, relative to its folder
    qsizetype book = -1; ///< place in the session's list of books
    bool fetched = true;
    Node *parent = nullptr;
    int row = 0;
    Nodes children = {};
};

namespace {
struct KindLook
{
    QLatin1StringView icon;
    QLatin1StringView word;
};

KindLook lookOf(TreeKind kind)
{
    switch (kind) {
    case TreeKind::Project:
        return {"project"_L1, "Project"_L1};
    case TreeKind::Globals:
        return {"globals"_L1, "Globals"_L1};
    case TreeKind::Books:
        return {"books"_L1, "Books"_L1};
    case TreeKind::Book:
        return {"book"_L1, "Book"_L1};
    case TreeKind::GlobalPage:
        return {"page"_L1, "Global page"_L1};
    case TreeKind::Page:
        return {"page"_L1, "Page"_L1};
    case TreeKind::QuickNav:
        return {"quicknav"_L1, "Quick navigation"_L1};
    case TreeKind::View:
        return {"quicknav-view"_L1, "View"_L1};
    case TreeKind::Group:
        return {"quicknav-group"_L1, "Group"_L1};
    case TreeKind::Topic:
        return {"quicknav-topic"_L1, "Topic"_L1};
    case TreeKind::Category:
        return {"quicknav-category"_L1, "Category"_L1};
    case TreeKind::Problem:
        break;
    }
    return {"warning"_L1, "Problem"_L1};
}

TreeKind below(TreeKind kind)
{
    return static_cast<TreeKind>(static_cast<int>(kind) + 1);
}
} // namespace

ProjectTreeModel::ProjectTreeModel(ProjectSession &session, QObject *parent)
    : QAbstractItemModel(parent)
    , m_session(session)
    , m_root(std::make_unique<Node>())
{
    rebuild();
}

ProjectTreeModel::~ProjectTreeModel() = default;

void ProjectTreeModel::rebuild()
{
    beginResetModel();
    m_root = std::make_unique<Node>();
    if (const QString &project = m_session.projectName(); !project.isEmpty()) {
        auto top = std::make_unique<Node>(Node{TreeKind::Project, project, project, {}});
        Nodes sections;
        sections.push_back(std::make_unique<Node>(
            Node{TreeKind::Globals, u"Globals"_s, u"globals"_s, {}, -1, false}));
        sections.push_back(
            std::make_unique<Node>(Node{TreeKind::Books, u"Books"_s, u"books"_s, {}}));
        sections.push_back(std::make_unique<Node>(
            Node{TreeKind::QuickNav, u"Quick Navigation"_s, u"quicknav"_s, {}, -1, false}));
        adopt(*sections.at(1), booksOf());
        adopt(*top, std::move(sections));
        Nodes tops;
        tops.push_back(std::move(top));
        adopt(*m_root, std::move(tops));
    }
    endResetModel();
}

void ProjectTreeModel::adopt(Node &parent, Nodes nodes)
{
    parent.children = std::move(nodes);
    for (size_t row = 0; row < parent.children.size(); ++row) {
        parent.children[row]->parent = &parent;
        parent.children[row]->row = static_cast<int>(row);
    }
}

ProjectTreeModel::Nodes ProjectTreeModel::booksOf()
{
    Nodes nodes;
    QSet<QString> names;
    m_sharedNames.clear();
    for (qsizetype i = 0; i < m_session.books().size(); ++i) {
        const TocBook &book = m_session.books().at(i);
        nodes.push_back(std::make_unique<Node>(
            Node{TreeKind::Book, book.name, identityOf(book), {}, i, false}));
        if (names.contains(book.name))
            m_sharedNames.insert(book.name);
        names.insert(book.name);
    }
    return nodes;
}

ProjectTreeModel::Nodes ProjectTreeModel::pagesOf(const QList<BookPage> &pages, qsizetype book)
{
    Nodes nodes;
    for (const BookPage &page : pages) {
        const QString name = page.title.isEmpty() ? page.file : page.title;
        auto node = std::make_unique<Node>(Node{TreeKind::Page, name, page.id, page.file, book});
        adopt(*node, pagesOf(page.pages, book));
        nodes.push_back(std::move(node));
    }
    return nodes;
}

ProjectTreeModel::Nodes ProjectTreeModel::quickNavOf(const QList<QuickNavNode> &nodes,
                                                     TreeKind kind)
{
    Nodes made;
    for (const QuickNavNode &entry : nodes) {
        const QString id = entry.id.isEmpty() ? entry.name : entry.id;
        auto node = std::make_unique<Node>(Node{kind, entry.name, id, {}});
        if (kind != TreeKind::Category)
            adopt(*node, quickNavOf(entry.children, below(kind)));
        made.push_back(std::move(node));
    }
    return made;
}

ProjectTreeModel::Nodes ProjectTreeModel::contentsOf(const Node &node)
{
    if (node.kind == TreeKind::QuickNav)
        return quickNavOf(m_session.quickNav().views, TreeKind::View);
    if (node.kind == TreeKind::Book)
        return pagesOf(m_session.book(m_session.books().at(node.book)).pages, node.book);
    Nodes pages;
    for (const GlobalPage &page : m_session.globalPages()) {
        const QString name = page.title.isEmpty() ? page.file : page.title;
        pages.push_back(
            std::make_unique<Node>(Node{TreeKind::GlobalPage, name, page.id, page.file}));
    }
    return pages;
}

bool ProjectTreeModel::canFetchMore(const QModelIndex &parent) const
{
    return parent.isValid() && !nodeAt(parent)->fetched;
}

void ProjectTreeModel::fetchMore(const QModelIndex &parent)
{
    if (!canFetchMore(parent))
        return;
    Node &node = *nodeAt(parent);
    node.fetched = true;
    Nodes nodes;
    const auto showProblem = [&](const QvError &error) {
        nodes.push_back(
            std::make_unique<Node>(Node{TreeKind::Problem, error.description(), u"problem"_s, {}}));
    };
    trap(showProblem, [&] { nodes = contentsOf(node); });
    if (nodes.empty())
        return;
    beginInsertRows(parent, 0, static_cast<int>(nodes.size()) - 1);
    adopt(node, std::move(nodes));
    endInsertRows();
}

QModelIndex ProjectTreeModel::index(int row, int column, const QModelIndex &parent) const
{
    const Node *node = nodeAt(parent);
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
    const Node *node = nodeAt(parent);
    return !node->fetched || !node->children.empty();
}

QVariant ProjectTreeModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const Node &node = *nodeAt(index);
    switch (role) {
    case Qt::DisplayRole:
        return shownName(node);
    case Qt::DecorationRole:
        return icon(lookOf(node.kind).icon);
    case Qt::AccessibleTextRole:
        return spokenText(node);
    case Qt::ToolTipRole: {
        const QString place = path(index);
        return place.isEmpty() ? node.name : m_session.shownPath(place);
    }
    case FilterRole:
        return filterText(node);
    default:
        return {};
    }
}

QString ProjectTreeModel::filterText(const Node &node) const
{
    switch (node.kind) {
    case TreeKind::Project:
    case TreeKind::Globals:
    case TreeKind::Books:
    case TreeKind::QuickNav:
        return {};
    case TreeKind::Book:
        return node.name + u' ' + m_session.books().at(node.book).acronym;
    default:
        return node.name + u' ' + node.file;
    }
}

QString ProjectTreeModel::spokenText(const Node &node) const
{
    const QString word = lookOf(node.kind).word;
    if (node.kind == TreeKind::Globals || node.kind == TreeKind::Books
        || node.kind == TreeKind::QuickNav)
        return word;
    return word + u' ' + shownName(node);
}

QString ProjectTreeModel::shownName(const Node &node) const
{
    if (node.kind != TreeKind::Book || !m_sharedNames.contains(node.name))
        return node.name;
    return u"%1 (%2)"_s.arg(node.name, m_session.books().at(node.book).acronym);
}

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
    const Node *node = nodeAt(index);
    return node->kind == TreeKind::Page ? node->id : QString();
}

QString ProjectTreeModel::path(const QModelIndex &index) const
{
    const Node &node = *nodeAt(index);
    const QString base = m_session.folder();
    switch (node.kind) {
    case TreeKind::Project:
    case TreeKind::Books:
        return base;
    case TreeKind::Globals:
        return base + ProjectFile::globalFolder;
    case TreeKind::GlobalPage:
        return insideOf(base + ProjectFile::globalFolder + u'\\', node.file).value_or(QString());
    case TreeKind::Book:
        return insideOf(base, m_session.books().at(node.book).folder).value_or(QString());
    case TreeKind::Page:
        return insideOf(base, m_session.books().at(node.book).folder + u'\\' + node.file)
            .value_or(QString());
    case TreeKind::QuickNav:
        return base + ProjectFile::quickNav;
    default:
        return {};
    }
}

QStringList ProjectTreeModel::place(const QModelIndex &index) const
{
    QStringList ids;
    for (const Node *node = nodeAt(index); node != m_root.get(); node = node->parent)
        ids.prepend(node->id);
    return ids;
}

QModelIndex ProjectTreeModel::find(const QStringList &place)
{
    QModelIndex at;
    for (const QString &id : place) {
        fetchMore(at);
        const Nodes &children = nodeAt(at)->children;
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
    const QModelIndex at = find({m_session.projectName(), u"books"_s, identityOf(book)});
    if (!at.isValid() || pageId.isEmpty())
        return at;
    fetchMore(at);
    QModelIndexList waiting{at};
    while (!waiting.isEmpty()) {
        const QModelIndex parent = waiting.takeLast();
        for (int row = 0; row < rowCount(parent); ++row) {
            const QModelIndex child = index(row, 0, parent);
            if (nodeAt(child)->id == pageId)
                return child;
            waiting.append(child);
        }
    }
    return at;
}

ProjectTreeModel::Node *ProjectTreeModel::nodeAt(const QModelIndex &index) const
{
    return index.isValid() ? static_cast<Node *>(index.internalPointer()) : m_root.get();
}

QModelIndex ProjectTreeModel::indexOf(const Node *node) const
{
    if (node == nullptr || node == m_root.get())
        return {};
    return createIndex(node->row, 0, const_cast<Node *>(node));
}
