#include "controls/quicknav/QuickNavTree.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace QuickNavTree {

namespace {

constexpr qsizetype longestName = 200;

QString tr(const char *text)
{
    return QCoreApplication::translate("QuickNavTree", text);
}

using Way = QList<const QuickNavNode *>;

bool follow(const QList<QuickNavNode> &nodes, int level, const QuickNavRef &ref, Way &way)
{
    for (const QuickNavNode &node : nodes) {
        way.append(&node);
        if (level == ref.level ? node.id == ref.id : follow(node.children, level + 1, ref, way))
            return true;
        way.removeLast();
    }
    return false;
}

Way nodesTo(const QuickNav &nav, const QuickNavRef &ref)
{
    Way way;
    if (ref.level >= 0 && ref.level <= categoryLevel)
        follow(nav.views, 0, ref, way);
    return way;
}

bool isForbidden(char32_t c)
{
    const QChar::Category category = QChar::category(c);
    return category == QChar::Other_Control || category == QChar::Other_Format
           || category == QChar::Other_Surrogate || QChar::isNonCharacter(c);
}

} // namespace

const QuickNavNode *find(const QuickNav &nav, const QuickNavRef &ref)
{
    const Way way = nodesTo(nav, ref);
    return way.isEmpty() ? nullptr : way.last();
}

QList<QuickNavNode> below(const QuickNav &nav, const QuickNavRef &ref)
{
    if (ref.level < 0)
        return nav.views;
    const QuickNavNode *node = find(nav, ref);
    return node != nullptr ? node->children : QList<QuickNavNode>();
}

QList<QuickNavRef> wayTo(const QuickNav &nav, const QuickNavRef &ref)
{
    QList<QuickNavRef> refs;
    for (const QuickNavNode *node : nodesTo(nav, ref))
        refs.append({static_cast<int>(refs.size()), node->id});
    return refs;
}

QStringList namesTo(const QuickNav &nav, const QuickNavRef &ref)
{
    QStringList names;
    for (const QuickNavNode *node : nodesTo(nav, ref))
        names.append(node->name);
    return names;
}

QuickNavRef parentOf(const QuickNav &nav, const QuickNavRef &ref)
{
    const QList<QuickNavRef> way = wayTo(nav, ref);
    return way.size() < 2 ? QuickNavRef() : way.at(way.size() - 2);
}

std::optional<QuickNavRef> byNames(const QuickNav &nav, const QStringList &names)
{
    QuickNavRef ref;
    const QList<QuickNavNode> *nodes = &nav.views;
    for (const QString &name : names) {
        const QuickNavNode *node = named(*nodes, name);
        if (node == nullptr)
            return {};
        ref = {ref.level + 1, node->id};
        nodes = &node->children;
    }
    return ref;
}

const QuickNavNode *named(const QList<QuickNavNode> &nodes, const QString &name)
{
    const auto is = [&](Qt::CaseSensitivity sensitivity) {
        return std::find_if(nodes.cbegin(), nodes.cend(), [&](const QuickNavNode &node) {
            return node.name.compare(name, sensitivity) == 0;
        });
    };
    auto found = is(Qt::CaseSensitive);
    if (found == nodes.cend())
        found = is(Qt::CaseInsensitive);
    return found == nodes.cend() ? nullptr : &*found;
}

int linksIn(const QuickNavNode &node)
{
    auto links = static_cast<int>(node.links.size());
    for (const QuickNavNode &child : node.children)
        links += linksIn(child);
    return links;
}

int nodesIn(const QuickNavNode &node)
{
    auto nodes = static_cast<int>(node.children.size());
    for (const QuickNavNode &child : node.children)
        nodes += nodesIn(child);
    return nodes;
}

QString linkCount(qsizetype links)
{
    return links == 1 ? tr("1 link") : tr("%1 links").arg(links);
}

QString word(int level)
{
    const std::array words{tr("view"), tr("group"), tr("topic"), tr("category")};
    return words.at(static_cast<size_t>(std::clamp(level, 0, categoryLevel)));
}

QString nameProblem(int level, const QString &name, const QList<QuickNavNode> &siblings)
{
    const QString trimmed = name.trimmed();
    if (trimmed.isEmpty())
        return tr("Enter a name for the %1.").arg(word(level));
    if (trimmed.size() > longestName)
        return tr("The name is too long: at most %1 characters.").arg(longestName);
    for (const char32_t c : trimmed.toUcs4()) {
        if (isForbidden(c))
            return tr("The name holds a character that is not allowed (U+%1).")
                .arg(QString::number(static_cast<uint>(c), 16).toUpper().rightJustified(4, u'0'));
    }
    if (const QuickNavNode *taken = named(siblings, trimmed))
        return tr("There is a %1 named \"%2\" here already.").arg(word(level), taken->name);
    return {};
}

QString freeName(const QString &wanted, const QList<QuickNavNode> &siblings)
{
    QString start = wanted.left(longestName - 6); // room for the number
    if (!start.isEmpty() && start.back().isHighSurrogate())
        start.chop(1);
    QString name = wanted;
    for (int number = 2; named(siblings, name) != nullptr; ++number)
        name = start + u' ' + QString::number(number);
    return name;
}

} // namespace QuickNavTree
