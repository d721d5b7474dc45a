#pragma once

#include <QList>

#include <optional>

/// A row that says below which other it stands.
struct TreeRow
{
    std::optional<int> key, parent;
    int group = 0; ///< rows stand below rows of their own group only
};

/// A row at its place.
struct TreePlace
{
    qsizetype row = 0; ///< in the list of rows
    int level = 1;
};

struct TreeFault
{
    enum class Kind {
        KeyTaken,        ///< an earlier row has its key, and gets what stands below both
        ParentMissing,   ///< stands at the top
        ParentElsewhere, ///< the same, for a parent of another group
        Circle,          ///< stands below itself; now at the top
        TooDeep,         ///< now at the deepest level
    } kind;
    qsizetype row;
};

struct LegacyTree
{
    QList<TreePlace> places; ///< all rows, each directly followed by what stands below it
    QList<TreeFault> faults;
};

/// Puts rows, which come in their order, below each other; none deeper than `deepest`.
LegacyTree plantTree(const QList<TreeRow> &rows, int deepest);
