#include "controls/quicknav/QuickNavCommands.h"

#include "platform/QvError.h"

#include <QCoreApplication>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace QuickNavTree;

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("QuickNavCommands", text);
}

[[noreturn]] void refuse(const QString &why)
{
    throw QvError(PathFileAccess, {}, why);
}

[[noreturn]] void refuseMissing(const QString &what)
{
    refuse(tr("The %1 is no longer there. Another author may have deleted it; press F5 to see the "
              "quick navigation as it is now.")
               .arg(what));
}

/// A node where it stands, to be changed.
struct Spot
{
    QList<QuickNavNode> *list = nullptr;
    qsizetype at = -1;

    [[nodiscard]] QuickNavNode &node() const { return (*list)[at]; }
};

Spot spotIn(QList<QuickNavNode> &nodes, int level, const QuickNavRef &ref)
{
    for (qsizetype i = 0; i < nodes.size(); ++i) {
        if (level == ref.level && nodes.at(i).id == ref.id)
            return {&nodes, i};
        if (level == ref.level)
            continue;
        if (const Spot spot = spotIn(nodes[i].children, level + 1, ref); spot.list != nullptr)
            return spot;
    }
    return {};
}

Spot spotOf(QuickNav &nav, const QuickNavRef &ref)
{
    const Spot spot = spotIn(nav.views, 0, ref);
    if (spot.list == nullptr)
        refuseMissing(word(ref.level));
    return spot;
}

QList<QuickNavNode> &childrenOf(QuickNav &nav, const QuickNavRef &parent)
{
    return parent.level < 0 ? nav.views : spotOf(nav, parent).node().children;
}

QList<QuickNavLink> &linksOf(QuickNav &nav, const QuickNavRef &category)
{
    if (category.level != categoryLevel)
        refuse(tr("Links stand in categories only."));
    return spotOf(nav, category).node().links;
}

void requireName(int level, const QString &name, QList<QuickNavNode> siblings, const QString &id)
{
    siblings.removeIf([&](const QuickNavNode &node) { return !id.isEmpty() && node.id == id; });
    if (const QString problem = nameProblem(level, name, siblings); !problem.isEmpty())
        refuse(problem);
}

template <typename List>
qsizetype placeIn(const List &list, int place)
{
    return place < 0 ? list.size() : std::min<qsizetype>(place, list.size());
}

QuickNavNode withoutIds(QuickNavNode node)
{
    node.id.clear();
    for (QuickNavLink &link : node.links)
        link.id.clear();
    for (QuickNavNode &child : node.children)
        child = withoutIds(child);
    return node;
}

bool leadTheSameWay(const QuickNavLink &a, const QuickNavLink &b)
{
    return a.book.compare(b.book, Qt::CaseInsensitive) == 0 && a.page == b.page
           && a.anchor == b.anchor;
}

bool holds(const QList<QuickNavLink> &links, const QuickNavLink &link)
{
    return std::any_of(links.cbegin(), links.cend(),
                       [&](const QuickNavLink &other) { return leadTheSameWay(other, link); });
}

template <typename Visit>
void eachCategory(QList<QuickNavNode> &nodes, const Visit &visit)
{
    for (QuickNavNode &node : nodes) {
        visit(node);
        eachCategory(node.children, visit);
    }
}

/// The links of these ids, in that order; with `take` they leave the categories they stood in.
QList<QuickNavLink> linksWith(QuickNav &nav, const QStringList &ids, bool take)
{
    QHash<QString, QuickNavLink> found;
    eachCategory(nav.views, [&](QuickNavNode &category) {
        for (const QuickNavLink &link : std::as_const(category.links)) {
            if (ids.contains(link.id))
                found.insert(link.id, link);
        }
        if (take)
            category.links.removeIf(
                [&](const QuickNavLink &link) { return ids.contains(link.id); });
    });
    QList<QuickNavLink> links;
    for (const QString &id : ids) {
        if (!found.contains(id))
            refuseMissing(tr("link"));
        links.append(found.value(id));
    }
    return links;
}

void insertLinks(QList<QuickNavLink> &links, qsizetype at, const QList<QuickNavLink> &added)
{
    for (const QuickNavLink &link : added)
        links.insert(at++, link);
}

} // namespace

QuickNavCommands::QuickNavCommands(ProjectSession &session)
    : m_session(session)
{
}

bool QuickNavCommands::perform(const QString &command, const std::function<void(QuickNav &)> &edit)
{
    Session &values = m_session.program().session;
    return m_session.perform(command, [&](StagedFiles &files) {
        QuickNav nav = readQuickNav(values, files, m_session.projectName());
        const QuickNav before = nav;
        edit(nav);
        if (nav != before)
            writeQuickNav(values, files, m_session.projectName(), nav);
    });
}

QuickNavRef QuickNavCommands::add(const QuickNavRef &parent, const QString &name, int place)
{
    const int level = parent.level + 1;
    const QString trimmed = name.trimmed();
    perform(tr("Add %1 %2").arg(word(level), trimmed), [&](QuickNav &nav) {
        QList<QuickNavNode> &nodes = childrenOf(nav, parent);
        requireName(level, trimmed, nodes, {});
        nodes.insert(placeIn(nodes, place), {{}, trimmed, {}, {}});
    });
    const QList<QuickNavNode> now = below(m_session.quickNav(), parent);
    const QuickNavNode *added = named(now, trimmed);
    return added != nullptr ? QuickNavRef{level, added->id} : parent;
}

void QuickNavCommands::rename(const QuickNavRef &node, const QString &name)
{
    const QString trimmed = name.trimmed();
    perform(tr("Rename %1 to %2").arg(word(node.level), trimmed), [&](QuickNav &nav) {
        const Spot spot = spotOf(nav, node);
        requireName(node.level, trimmed, *spot.list, node.id);
        spot.node().name = trimmed;
    });
}

int QuickNavCommands::remove(const QuickNavRef &node)
{
    int links = 0;
    const QuickNavNode *known = find(m_session.quickNav(), node);
    const QString name = known != nullptr ? known->name : QString();
    perform(tr("Delete %1 %2").arg(word(node.level), name), [&](QuickNav &nav) {
        const Spot spot = spotOf(nav, node);
        links = linksIn(spot.node());
        spot.list->removeAt(spot.at);
    });
    return links;
}

bool QuickNavCommands::moveBy(const QuickNavRef &node, int places)
{
    return perform(tr("Move %1").arg(word(node.level)), [&](QuickNav &nav) {
        const Spot spot = spotOf(nav, node);
        spot.list->move(spot.at, std::clamp<qsizetype>(spot.at + places, 0, spot.list->size() - 1));
    });
}

void QuickNavCommands::moveTo(const QuickNavRef &node, const QuickNavRef &parent, int place)
{
    if (parent.level + 1 != node.level)
        refuse(tr("A %1 does not stand below a %2.").arg(word(node.level), word(parent.level)));
    perform(tr("Move %1").arg(word(node.level)), [&](QuickNav &nav) {
        const Spot spot = spotOf(nav, node);
        const QuickNavNode moved = spot.node();
        QList<QuickNavNode> &target = childrenOf(nav, parent);
        const bool stays = &target == spot.list;
        qsizetype at = placeIn(target, place);
        if (!stays)
            requireName(node.level, moved.name, target, {});
        else if (spot.at < at)
            --at;
        spot.list->removeAt(spot.at);
        target.insert(at, moved);
    });
}

QuickNavRef QuickNavCommands::copyTo(const QuickNavRef &node, const QuickNavRef &parent, int place)
{
    if (parent.level + 1 != node.level)
        refuse(tr("A %1 does not stand below a %2.").arg(word(node.level), word(parent.level)));
    QString name;
    perform(tr("Copy %1").arg(word(node.level)), [&](QuickNav &nav) {
        QuickNavNode copy = withoutIds(spotOf(nav, node).node());
        QList<QuickNavNode> &target = childrenOf(nav, parent);
        copy.name = name = freeName(copy.name, target);
        target.insert(placeIn(target, place), copy);
    });
    const QList<QuickNavNode> now = below(m_session.quickNav(), parent);
    const QuickNavNode *copy = named(now, name);
    return copy != nullptr ? QuickNavRef{node.level, copy->id} : node;
}

int QuickNavCommands::addLinks(const QuickNavRef &category, const QList<QuickNavLink> &links,
                               int place)
{
    int added = 0;
    perform(tr("Add %1").arg(linkCount(links.size())), [&](QuickNav &nav) {
        QList<QuickNavLink> &there = linksOf(nav, category);
        qsizetype at = placeIn(there, place);
        for (QuickNavLink link : links) {
            if (holds(there, link))
                continue;
            link.id.clear();
            there.insert(at++, link);
            ++added;
        }
    });
    return added;
}

void QuickNavCommands::removeLinks(const QStringList &ids)
{
    perform(tr("Delete %1").arg(linkCount(ids.size())),
            [&](QuickNav &nav) { linksWith(nav, ids, true); });
}

void QuickNavCommands::moveLinks(const QStringList &ids, const QuickNavRef &category, int place)
{
    perform(tr("Move %1").arg(linkCount(ids.size())), [&](QuickNav &nav) {
        const QList<QuickNavLink> &before = linksOf(nav, category);
        const qsizetype end = placeIn(before, place);
        const auto gone =
            std::count_if(before.cbegin(), before.cbegin() + end,
                          [&](const QuickNavLink &link) { return ids.contains(link.id); });
        const QList<QuickNavLink> moved = linksWith(nav, ids, true);
        insertLinks(linksOf(nav, category), end - gone, moved);
    });
}

bool QuickNavCommands::moveLinksBy(const QuickNavRef &category, const QStringList &ids, int places)
{
    return perform(tr("Move %1").arg(linkCount(ids.size())), [&](QuickNav &nav) {
        QList<QuickNavLink> &links = linksOf(nav, category);
        const auto isMoved = [&](const QuickNavLink &link) { return ids.contains(link.id); };
        const auto first = std::find_if(links.cbegin(), links.cend(), isMoved);
        const qsizetype from = first - links.cbegin();
        QList<QuickNavLink> moved = links;
        moved.removeIf([&](const QuickNavLink &link) { return !isMoved(link); });
        links.removeIf(isMoved);
        insertLinks(links, std::clamp<qsizetype>(from + places, 0, links.size()), moved);
    });
}

void QuickNavCommands::copyLinks(const QStringList &ids, const QuickNavRef &category, int place)
{
    perform(tr("Copy %1").arg(linkCount(ids.size())), [&](QuickNav &nav) {
        QList<QuickNavLink> copies = linksWith(nav, ids, false);
        QList<QuickNavLink> &target = linksOf(nav, category);
        copies.removeIf([&](const QuickNavLink &link) { return holds(target, link); });
        for (QuickNavLink &copy : copies)
            copy.id.clear();
        insertLinks(target, placeIn(target, place), copies);
    });
}

void QuickNavCommands::changeLink(const QString &command, const QuickNavLink &link)
{
    perform(command, [&](QuickNav &nav) {
        bool found = false;
        eachCategory(nav.views, [&](QuickNavNode &category) {
            for (QuickNavLink &old : category.links) {
                if (old.id != link.id)
                    continue;
                old = link;
                found = true;
            }
        });
        if (!found)
            refuseMissing(tr("link"));
    });
}
