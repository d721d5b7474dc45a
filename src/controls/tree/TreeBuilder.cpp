#include "controls/tree/TreeBuilder.h"

#include "platform/QvError.h"

using namespace Qt::StringLiterals;

namespace {
std::unique_ptr<TreeNode> made(TreeNode node)
{
    return std::make_unique<TreeNode>(std::move(node));
}

TreeKind below(TreeKind kind)
{
    return static_cast<TreeKind>(static_cast<int>(kind) + 1);
}

QString nameOf(const QString &title, const QString &file)
{
    return title.isEmpty() ? file : title;
}
} // namespace

TreeBuilder::TreeBuilder(ProjectSession &session)
    : m_session(session)
{
}

TreeNodes TreeBuilder::project()
{
    TreeNodes top;
    const QString &name = m_session.projectName();
    if (name.isEmpty())
        return top;
    TreeNodes sections;
    sections.push_back(made(
        {.kind = TreeKind::Globals, .name = u"Globals"_s, .id = u"globals"_s, .fetched = false}));
    sections.push_back(made({.kind = TreeKind::Books, .name = u"Books"_s, .id = u"books"_s}));
    sections.push_back(made({.kind = TreeKind::QuickNav,
                             .name = u"Quick Navigation"_s,
                             .id = u"quicknav"_s,
                             .fetched = false}));
    adopt(*sections.at(1), books());
    top.push_back(made({.kind = TreeKind::Project, .name = name, .id = u"project"_s}));
    adopt(*top.front(), std::move(sections));
    return top;
}

TreeNodes TreeBuilder::books()
{
    QHash<QString, int> names;
    for (const TocBook &book : m_session.books())
        ++names[book.name];
    TreeNodes nodes;
    qsizetype place = 0;
    for (const TocBook &book : m_session.books()) {
        nodes.push_back(made({.kind = TreeKind::Book,
                              .name = book.name,
                              .id = identityOf(book),
                              .detail = book.acronym,
                              .book = place++,
                              .fetched = false,
                              .isTwin = names.value(book.name) > 1}));
    }
    return nodes;
}

TreeNodes TreeBuilder::contentsOf(const TreeNode &node)
{
    TreeNodes nodes;
    const auto showProblem = [&](const QvError &error) {
        nodes.push_back(
            made({.kind = TreeKind::Problem, .name = error.description(), .id = u"problem"_s}));
    };
    trap(showProblem, [&] { nodes = read(node); });
    return nodes;
}

TreeNodes TreeBuilder::read(const TreeNode &node)
{
    switch (node.kind) {
    case TreeKind::Globals:
        return globalPages();
    case TreeKind::Book:
        return pages(m_session.book(m_session.books().at(node.book)).pages, node.book);
    case TreeKind::QuickNav:
        return quickNav(m_session.quickNav().views, TreeKind::View);
    default:
        return {};
    }
}

TreeNodes TreeBuilder::globalPages()
{
    TreeNodes nodes;
    for (const GlobalPage &page : m_session.globalPages())
        nodes.push_back(made({.kind = TreeKind::GlobalPage,
                              .name = nameOf(page.title, page.file),
                              .id = page.id,
                              .detail = page.file}));
    return nodes;
}

TreeNodes TreeBuilder::pages(const QList<BookPage> &pages, qsizetype book)
{
    TreeNodes nodes;
    for (const BookPage &page : pages) {
        nodes.push_back(made({.kind = TreeKind::Page,
                              .name = nameOf(page.title, page.file),
                              .id = page.id,
                              .detail = page.file,
                              .book = book}));
        adopt(*nodes.back(), TreeBuilder::pages(page.pages, book));
    }
    return nodes;
}

TreeNodes TreeBuilder::quickNav(const QList<QuickNavNode> &nodes, TreeKind kind)
{
    TreeNodes rows;
    for (const QuickNavNode &entry : nodes) {
        rows.push_back(made(
            {.kind = kind, .name = entry.name, .id = entry.id.isEmpty() ? entry.name : entry.id}));
        if (kind != TreeKind::Category)
            adopt(*rows.back(), quickNav(entry.children, below(kind)));
    }
    return rows;
}
