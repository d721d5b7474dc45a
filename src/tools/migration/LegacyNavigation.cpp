#include "tools/migration/LegacyNavigation.h"

#include "tools/migration/LegacyRows.h"

#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr int categoryLevel = 4;
constexpr int noFamily = -3;

QString textOf(const TreeFault &fault, const LegacyNavigationNode &node)
{
    switch (fault.kind) {
    case TreeFault::Kind::KeyTaken:
        return u"Row %1 has the same NodeID as an earlier one, which gets what stands below both."_s
            .arg(node.row);
    case TreeFault::Kind::ParentMissing:
        return u"There is no node with ParentID %1; it is now a view."_s.arg(*node.parent);
    default: // one group, and no limit
        return u"It stands below itself; it is now a view."_s;
    }
}

class NavigationMaker final
{
public:
    NavigationMaker(const LegacyBookSet &set, const LegacyPlaces &places,
                    const LegacyOutlines &outlines, MigrationNotes &notes)
        : m_nodes(set.navigation)
        , m_places(places)
        , m_outlines(outlines)
        , m_notes(notes)
        , m_order(inOrder(set.navigation))
    {
    }

    QuickNav make()
    {
        QList<TreeRow> rows;
        for (const qsizetype at : std::as_const(m_order))
            rows.append({m_nodes.at(at).id, m_nodes.at(at).parent});
        const LegacyTree tree = plantTree(rows, std::numeric_limits<int>::max());
        for (const TreeFault &fault : tree.faults) {
            const LegacyNavigationNode &node = m_nodes.at(m_order.at(fault.row));
            note(node, textOf(fault, node));
        }
        noteLevels(tree.places);
        m_tree = tree.places;
        QuickNav quickNav;
        quickNav.views = nodes(1);
        m_notes.count(LegacyTable::quickNav, m_nodes.size(), m_lost);
        return quickNav;
    }

private:
    void note(const LegacyNavigationNode &node, const QString &text)
    {
        m_notes.add(LegacyTable::quickNav, nameOf(node), text);
    }

    void noteLevels(const QList<TreePlace> &places)
    {
        int others = 0;
        for (const TreePlace &place : places) {
            const std::optional<int> level = m_nodes.at(m_order.at(place.row)).level;
            others += level && *level != place.level ? 1 : 0;
        }
        if (others > 0)
            m_notes.add(LegacyTable::quickNav, {},
                        u"NodeLevel says another level than ParentID in this many rows: %1. "
                        "ParentID was followed."_s.arg(others));
    }

    [[nodiscard]] int levelHere() const { return m_at < m_tree.size() ? m_tree.at(m_at).level : 0; }
    const LegacyNavigationNode &takeNode() { return m_nodes.at(m_order.at(m_tree.at(m_at++).row)); }

    QList<QuickNavNode> nodes(int level)
    {
        QList<QuickNavNode> made;
        while (levelHere() == level) {
            const LegacyNavigationNode &node = takeNode();
            made.append(named(titleOf(node)));
            if (level == categoryLevel)
                fillCategory(made.last(), node);
            else
                fillNode(made.last(), node, level);
        }
        return made;
    }

    void fillNode(QuickNavNode &made, const LegacyNavigationNode &node, int level)
    {
        made.children = nodes(level + 1);
        if (node.target.isEmpty())
            return;
        QuickNavNode below = named(made.name);
        below.links.append(linkOf(node, made.name));
        for (int above = categoryLevel - 1; above > level; --above) {
            QuickNavNode parent = named(made.name);
            parent.children.append(below);
            below = parent;
        }
        made.children.prepend(below);
        note(node, u"It leads to \"%1\", but only categories hold links; the link is in a category "
                   "of that name below it."_s.arg(node.target));
    }

    void fillCategory(QuickNavNode &category, const LegacyNavigationNode &node)
    {
        if (!node.target.isEmpty())
            category.links.append(linkOf(node, category.name));
        while (levelHere() > categoryLevel) {
            const LegacyNavigationNode &below = takeNode();
            const QString title = titleOf(below);
            m_lost += below.target.isEmpty() ? 1 : 0;
            note(below, below.target.isEmpty()
                            ? u"\"%1\" stands below a category and leads nowhere; it was left "
                              "out."_s.arg(title)
                            : u"\"%1\" stands below a category; it is a link of \"%2\"."_s.arg(
                                title, category.name));
            if (!below.target.isEmpty())
                category.links.append(linkOf(below, title));
        }
    }

    static QuickNavNode named(const QString &name) { return {{}, name, {}, {}}; }

    QString titleOf(const LegacyNavigationNode &node)
    {
        if (!node.title.trimmed().isEmpty())
            return node.title;
        const QString title = nameOf(node);
        note(node, u"It has no title; it is called \"%1\"."_s.arg(title));
        return title;
    }

    QuickNavLink linkOf(const LegacyNavigationNode &node, const QString &title)
    {
        const qsizetype hash = node.target.lastIndexOf(u'#');
        const MovedPlace *whole = find(node.target);
        const bool hasAnchor = hash >= 0 && !whole;
        const QString file = hasAnchor ? node.target.first(hash) : node.target;
        const QString anchor = hasAnchor ? node.target.sliced(hash + 1) : QString();
        if (const auto key = m_outlines.keyOf(whole ? whole : find(file)))
            return {key->book, key->page, title, anchor};
        note(node, u"It leads to \"%1\", which is no page of the project."_s.arg(node.target));
        return {{}, file, title, anchor};
    }

    [[nodiscard]] const MovedPlace *find(const QString &target) const
    {
        return m_places.old.find(oldPlace({}, target), noFamily);
    }

    const QList<LegacyNavigationNode> &m_nodes;
    const LegacyPlaces &m_places;
    const LegacyOutlines &m_outlines;
    MigrationNotes &m_notes;
    const QList<qsizetype> m_order;
    QList<TreePlace> m_tree;
    qsizetype m_at = 0;
    int m_lost = 0;
};

} // namespace

QuickNav navigationOf(const LegacyBookSet &set, const LegacyPlaces &places,
                      const LegacyOutlines &outlines, MigrationNotes &notes)
{
    return NavigationMaker(set, places, outlines, notes).make();
}
