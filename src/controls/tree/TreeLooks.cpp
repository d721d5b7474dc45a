#include "controls/tree/TreeLooks.h"

#include "resources/Icons.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace {
struct KindLook
{
    QLatin1StringView icon;
    const char *word;
};

constexpr KindLook looks[]{
    {"project"_L1, QT_TRANSLATE_NOOP("TreeLooks", "Project")},
    {"globals"_L1, QT_TRANSLATE_NOOP("TreeLooks", "Globals")},
    {"page-global"_L1, QT_TRANSLATE_NOOP("TreeLooks", "Global page")},
    {"books"_L1, QT_TRANSLATE_NOOP("TreeLooks", "Books")},
    {"book"_L1, QT_TRANSLATE_NOOP("TreeLooks", "Book")},
    {"page"_L1, QT_TRANSLATE_NOOP("TreeLooks", "Page")},
    {"quicknav"_L1, QT_TRANSLATE_NOOP("TreeLooks", "Quick navigation")},
    {"quicknav-view"_L1, QT_TRANSLATE_NOOP("TreeLooks", "View")},
    {"quicknav-group"_L1, QT_TRANSLATE_NOOP("TreeLooks", "Group")},
    {"quicknav-topic"_L1, QT_TRANSLATE_NOOP("TreeLooks", "Topic")},
    {"quicknav-category"_L1, QT_TRANSLATE_NOOP("TreeLooks", "Category")},
    {"warning"_L1, QT_TRANSLATE_NOOP("TreeLooks", "Problem")},
};

const KindLook &lookOf(TreeKind kind)
{
    return looks[static_cast<size_t>(kind)];
}
} // namespace

QIcon TreeLooks::iconOf(TreeKind kind) const
{
    QIcon &made = m_icons[static_cast<size_t>(kind)];
    if (made.isNull())
        made = icon(lookOf(kind).icon);
    return made;
}

QString TreeLooks::wordOf(TreeKind kind)
{
    return QCoreApplication::translate("TreeLooks", lookOf(kind).word);
}

QString TreeLooks::shownName(const TreeNode &node)
{
    return node.isTwin ? u"%1 (%2)"_s.arg(node.name, node.detail) : node.name;
}

QString TreeLooks::spokenName(const TreeNode &node)
{
    const QString word = wordOf(node.kind);
    if (node.kind == TreeKind::Globals || node.kind == TreeKind::Books
        || node.kind == TreeKind::QuickNav)
        return word;
    return word + u' ' + shownName(node);
}
