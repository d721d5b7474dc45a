#pragma once

#include "controls/session/ProjectSession.h"
#include "controls/tree/TreeNode.h"

/// Makes the rows of the project tree from what the session knows.
class TreeBuilder final
{
public:
    explicit TreeBuilder(ProjectSession &session);

    /// The project with its three sections and its books, without reading a file; nothing when no
    /// project is open.
    [[nodiscard]] TreeNodes project();
    [[nodiscard]] TreeNodes books();
    /// What lies below the global pages, a book or the quick navigation; they are read for it.
    /// A file that cannot be read gives one node that says why.
    [[nodiscard]] TreeNodes contentsOf(const TreeNode &node);

private:
    [[nodiscard]] TreeNodes read(const TreeNode &node);
    [[nodiscard]] TreeNodes globalPages();
    [[nodiscard]] static TreeNodes pages(const QList<BookPage> &pages, qsizetype book);
    [[nodiscard]] static TreeNodes quickNav(const QList<QuickNavNode> &nodes, TreeKind kind);

    ProjectSession &m_session;
};
