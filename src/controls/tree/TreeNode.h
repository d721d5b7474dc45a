#pragma once

#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

enum class TreeKind {
    Project,
    Globals,
    GlobalPage,
    Books,
    Book,
    Page,
    QuickNav, ///< the five levels of the quick navigation follow each other
    View,
    Group,
    Topic,
    Category,
    Problem, ///< says why a file could not be read
};

struct TreeNode;
using TreeNodes = std::vector<std::unique_ptr<TreeNode>>;

/// One row of the project tree.
struct TreeNode
{
    TreeKind kind = TreeKind::Project;
    QString name = {};
    QString id = {};      ///< what tells it from its neighbours
    QString detail = {};  ///< file of a page, acronym of a book
    qsizetype book = -1;  ///< place in the session's list of books
    bool fetched = true;  ///< false: what lies below has not been read yet
    bool isTwin = false;  ///< another book has the same name
    bool matches = false; ///< the filter's words stand in it
    int found = 0;        ///< matches in it and below
    bool isKept = true;   ///< by the filter
    TreeNode *parent = nullptr;
    int row = 0;
    TreeNodes children = {};
};

/// Puts `nodes` below `parent`, in place of what is there.
void adopt(TreeNode &parent, TreeNodes nodes);

/// Marks what a filter keeps of a node and all below: nodes that hold all words in name or detail,
/// what leads to them, and what lies below them (`inMatch`: the node does). Returns how many match.
/// No words keep everything.
int markMatches(TreeNode &node, const QStringList &words, bool inMatch);
