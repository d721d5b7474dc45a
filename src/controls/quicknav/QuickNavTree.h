#pragma once

#include "projectfiles/QuickNavFile.h"

#include <QString>
#include <QStringList>

/// A node of the quick navigation: level 0 to 3 (view, group, topic, category) and its id there.
/// Level -1 is the quick navigation itself, under which the views stand.
struct QuickNavRef
{
    int level = -1;
    QString id = {};
    friend bool operator==(const QuickNavRef &, const QuickNavRef &) = default;
};

// Questions about a quick navigation that was read, and what its nodes may be called.
namespace QuickNavTree {

inline constexpr int categoryLevel = 3;

/// Null when it is not there.
const QuickNavNode *find(const QuickNav &nav, const QuickNavRef &ref);
/// The nodes right below one, or the views; empty for a node that is not there.
QList<QuickNavNode> below(const QuickNav &nav, const QuickNavRef &ref);
/// From the view down to the node itself; empty when it is not there.
QList<QuickNavRef> wayTo(const QuickNav &nav, const QuickNavRef &ref);
QStringList namesTo(const QuickNav &nav, const QuickNavRef &ref);
/// What stands above it.
QuickNavRef parentOf(const QuickNav &nav, const QuickNavRef &ref);
/// The node of these names (view, group, topic, category; as many as are known). Nothing when there
/// is none.
std::optional<QuickNavRef> byNames(const QuickNav &nav, const QStringList &names);
/// The node of that name among some.
const QuickNavNode *named(const QList<QuickNavNode> &nodes, const QString &name);

int linksIn(const QuickNavNode &node); ///< its own and those of everything below
int nodesIn(const QuickNavNode &node); ///< below it

QString linkCount(qsizetype links); ///< "1 link", "3 links"
QString word(int level);            ///< "view", "group", "topic", "category"
/// What is wrong with a name, as a sentence; "" for nothing. `siblings` without the node itself.
QString nameProblem(int level, const QString &name, const QList<QuickNavNode> &siblings);
/// `wanted`, or with a number behind it when a sibling has that name.
QString freeName(const QString &wanted, const QList<QuickNavNode> &siblings);

} // namespace QuickNavTree
