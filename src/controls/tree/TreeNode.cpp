#include "controls/tree/TreeNode.h"

#include <algorithm>

namespace {
// The fixed nodes are always called the same, and a problem is nothing to look for.
bool isSought(TreeKind kind)
{
    return kind != TreeKind::Project && kind != TreeKind::Globals && kind != TreeKind::Books
           && kind != TreeKind::QuickNav && kind != TreeKind::Problem;
}

bool holdsAll(const TreeNode &node, const QStringList &words)
{
    return std::all_of(words.cbegin(), words.cend(), [&](const QString &word) {
        return node.name.contains(word, Qt::CaseInsensitive)
               || node.detail.contains(word, Qt::CaseInsensitive);
    });
}
} // namespace

void adopt(TreeNode &parent, TreeNodes nodes)
{
    parent.children = std::move(nodes);
    int row = 0;
    for (const auto &child : parent.children) {
        child->parent = &parent;
        child->row = row++;
    }
}

int markMatches(TreeNode &node, const QStringList &words, bool inMatch)
{
    node.matches = !words.isEmpty() && isSought(node.kind) && holdsAll(node, words);
    node.found = node.matches ? 1 : 0;
    for (const auto &child : node.children)
        node.found += markMatches(*child, words, inMatch || node.matches);
    node.isKept = words.isEmpty() || inMatch || node.found > 0 || node.kind == TreeKind::Project;
    return node.found;
}
