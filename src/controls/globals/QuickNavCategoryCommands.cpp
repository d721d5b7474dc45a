#include "controls/globals/QuickNavCategoryCommands.h"

#include "controls/globals/CategoryRules.h"
#include "platform/QvError.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int categoryLevel = 4; // view, group, topic, category

bool isSame(const QString &a, const QString &b)
{
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

template <typename Nodes, typename Visit>
void forCategories(Nodes &nodes, const Visit &visit, int level = 1)
{
    for (auto &node : nodes) {
        if (level == categoryLevel)
            visit(node);
        else
            forCategories(node.children, visit, level + 1);
    }
}

/// Two categories of one topic never have the same name: other tools find them by it.
void requireFree(const QList<QuickNavNode> &nodes, const QString &name, const QString &now,
                 int level = 1)
{
    const auto has = [&](const QString &wanted) {
        return std::ranges::any_of(
            nodes, [&](const QuickNavNode &node) { return isSame(node.name, wanted); });
    };
    if (level == categoryLevel && !isSame(name, now) && has(name) && has(now))
        throw QvError(
            InvalidCall, {},
            u"A topic of the quick navigation holds both a category \"%1\" and a "
            "category \"%2\". Rename or delete one of them there first."_s.arg(name, now));
    for (const QuickNavNode &node : nodes)
        requireFree(node.children, name, now, level + 1);
}

QStringList without(QStringList names, const QString &name)
{
    names.removeIf([&](const QString &other) { return isSame(other, name); });
    return names;
}

void require(const QString &name, const QStringList &others)
{
    if (const QString problem = CategoryRules::problemOf(name, others); !problem.isEmpty())
        throw QvError(InvalidCall, {}, problem);
}

} // namespace

int usesInTree(const QuickNav &quickNav, const QString &category)
{
    int count = 0;
    forCategories(quickNav.views,
                  [&](const QuickNavNode &node) { count += isSame(node.name, category) ? 1 : 0; });
    return count;
}

QuickNavCategoryCommands::QuickNavCategoryCommands(ProjectSession &session)
    : m_session(session)
{
}

void QuickNavCategoryCommands::add(const QString &name)
{
    perform(tr("Add quick-navigation category %1").arg(name), [&](QuickNav &quickNav) {
        require(name, quickNav.categories);
        quickNav.categories.append(name);
    });
}

void QuickNavCategoryCommands::rename(const QString &name, const QString &now)
{
    const QString command = tr("Rename quick-navigation category %1 to %2").arg(name, now);
    perform(command, [&](QuickNav &quickNav) {
        require(now, without(quickNav.categories, name));
        requireFree(quickNav.views, name, now);
        for (QString &listed : quickNav.categories) {
            if (isSame(listed, name))
                listed = now;
        }
        forCategories(quickNav.views, [&](QuickNavNode &node) {
            if (isSame(node.name, name))
                node.name = now;
        });
    });
}

void QuickNavCategoryCommands::remove(const QString &name)
{
    perform(tr("Delete quick-navigation category %1").arg(name),
            [&](QuickNav &quickNav) { quickNav.categories = without(quickNav.categories, name); });
}

void QuickNavCategoryCommands::perform(const QString &command,
                                       const std::function<void(QuickNav &)> &edit)
{
    Session &values = m_session.program().session;
    m_session.perform(command, [&](StagedFiles &files) {
        QuickNav quickNav = readQuickNav(values, files, m_session.projectName());
        edit(quickNav);
        writeQuickNav(values, files, m_session.projectName(), quickNav);
    });
}
