#pragma once

#include <QList>
#include <QString>
#include <QStringList>

/// How the author left the tree of a project: open nodes, the chosen one, and how far it was
/// scrolled. Nodes are meant by their places (`ProjectTreeModel::place`).
struct TreeState
{
    QList<QStringList> expanded;
    QStringList chosen;
    int scrolled = 0;
};

/// The states of the projects that were open last, in the user's settings. A project is meant by
/// its folder as the machine calls it.
namespace TreeMemory {
inline constexpr int projectsKept = 50;

void remember(const QString &folder, const TreeState &state);
/// The default state for a project that is not known.
TreeState recall(const QString &folder);
} // namespace TreeMemory
