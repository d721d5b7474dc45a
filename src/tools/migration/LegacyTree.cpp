#include "tools/migration/LegacyTree.h"

#include <QHash>

#include <algorithm>

namespace {

constexpr qsizetype none = -1;

// Chains of rows may be as long as the table: nothing here calls itself.
class Planter final
{
public:
    Planter(const QList<TreeRow> &rows, int deepest)
        : m_rows(rows)
        , m_deepest(deepest)
        , m_parents(rows.size(), none)
        , m_children(rows.size())
    {
    }

    LegacyTree run()
    {
        findParents();
        openCircles();
        for (qsizetype row = m_rows.size() - 1; row >= 0; --row) { // so that they leave in order
            if (m_parents.at(row) == none)
                m_open.append({row, 1});
            else
                m_children[m_parents.at(row)].append(row);
        }
        while (!m_open.isEmpty())
            place(m_open.takeLast());
        return std::move(m_tree);
    }

private:
    void fault(TreeFault::Kind kind, qsizetype row) { m_tree.faults.append({kind, row}); }

    void findParents()
    {
        QHash<int, qsizetype> byKey;
        for (qsizetype row = 0; row < m_rows.size(); ++row) {
            if (!m_rows.at(row).key)
                continue;
            if (byKey.contains(*m_rows.at(row).key))
                fault(TreeFault::Kind::KeyTaken, row);
            else
                byKey.insert(*m_rows.at(row).key, row);
        }
        for (qsizetype row = 0; row < m_rows.size(); ++row) {
            if (!m_rows.at(row).parent)
                continue;
            const qsizetype parent = byKey.value(*m_rows.at(row).parent, none);
            if (parent == none)
                fault(TreeFault::Kind::ParentMissing, row);
            else if (m_rows.at(parent).group != m_rows.at(row).group)
                fault(TreeFault::Kind::ParentElsewhere, row);
            else
                m_parents[row] = parent;
        }
    }

    /// Makes the first row of each circle one of the top.
    void openCircles()
    {
        QList<qsizetype> seenFrom(m_rows.size(), none);
        for (qsizetype start = 0; start < m_rows.size(); ++start) {
            qsizetype row = start;
            for (; row != none && seenFrom.at(row) == none; row = m_parents.at(row))
                seenFrom[row] = start;
            if (row != none && seenFrom.at(row) == start)
                open(row);
        }
    }

    void open(qsizetype inside)
    {
        qsizetype first = inside;
        for (qsizetype row = m_parents.at(inside); row != inside; row = m_parents.at(row))
            first = std::min(first, row);
        m_parents[first] = none;
        fault(TreeFault::Kind::Circle, first);
    }

    void place(const TreePlace &wanted)
    {
        if (wanted.level > m_deepest)
            fault(TreeFault::Kind::TooDeep, wanted.row);
        const int level = std::min(wanted.level, m_deepest);
        m_tree.places.append({wanted.row, level});
        for (const qsizetype child : m_children.at(wanted.row))
            m_open.append({child, level + 1});
    }

    const QList<TreeRow> &m_rows;
    const int m_deepest;
    QList<qsizetype> m_parents;
    QList<QList<qsizetype>> m_children; ///< the last one first
    QList<TreePlace> m_open;
    LegacyTree m_tree;
};

} // namespace

LegacyTree plantTree(const QList<TreeRow> &rows, int deepest)
{
    return Planter(rows, deepest).run();
}
