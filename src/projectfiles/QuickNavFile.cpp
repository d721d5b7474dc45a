#include "projectfiles/QuickNavFile.h"

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "platform/Xml.h"
#include "projectfiles/Backup.h"
#include "projectfiles/FileElements.h"
#include "startup/FileHelpers.h"

#include <QHash>

#include <array>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr auto rootName = "QV_QuickNav";
constexpr auto categoryList = "QuickNav_Categories";

struct Level
{
    const char *element;
    const char *name;
    const char *path; ///< below the root
    char16_t letter;  ///< of the ids
    const char *next; ///< attribute of the root: the next id
};
constexpr std::array<Level, 5> levels{
    {{"View", "View_Name", "View", u'V', "NextView"},
     {"Group", "Group_Name", "View/Group", u'G', "NextGroup"},
     {"Topic", "Topic_Name", "View/Group/Topic", u'T', "NextTopic"},
     {"Category", "Category_Name", "View/Group/Topic/Category", u'C', "NextCategory"},
     {"Link", "Link_Title", "View/Group/Topic/Category/Link", u'L', "NextLink"}}};
constexpr std::size_t linkLevel = 4;

/// What the file holds of one level, by ids; each element has one of its own from here on.
class LevelElements final
{
public:
    LevelElements(const pugi::xml_node &root, const Level &level);

    void reserve(const QString &id) { m_ids.reserve(id); }
    /// The element of that id, or a new one, behind the others that were placed in `parent`.
    pugi::xml_node place(pugi::xml_node parent, const QString &id);
    /// Removes the elements that nobody asked for.
    void removeRest();
    void store(const pugi::xml_node &root) const { m_ids.store(root); }

private:
    [[nodiscard]] pugi::xml_node first(const pugi::xml_node &parent) const;

    const Level &m_level;
    Ids m_ids;
    QList<pugi::xml_node> m_inOrder;
    QHash<QString, pugi::xml_node> m_old;
    pugi::xml_node m_last; ///< placed before
};

LevelElements::LevelElements(const pugi::xml_node &root, const Level &level)
    : m_level(level)
    , m_ids(level.letter, root, level.next)
{
    for (const pugi::xpath_node &found : root.select_nodes(level.path)) {
        m_inOrder.append(found.node());
        m_ids.reserve(valueOf(found.node().attribute("ID")));
    }
    Ids naming = m_ids;
    for (const pugi::xml_node &element : std::as_const(m_inOrder)) {
        const QString id = naming.take(valueOf(element.attribute("ID")));
        setAttribute(element, "ID", id);
        m_ids.reserve(id);
        m_old.insert(id, element);
    }
}

pugi::xml_node LevelElements::place(pugi::xml_node parent, const QString &wanted)
{
    const QString id = m_ids.take(wanted);
    const pugi::xml_node old = m_old.take(id);
    const bool isFirst = !m_last || m_last.parent() != parent;
    const pugi::xml_node next = isFirst ? first(parent) : m_last.next_sibling(m_level.element);
    if (old && old == next) // it stands where it should, and so does what surrounds it
        return m_last = old;
    if (isFirst && next)
        m_last = old ? parent.insert_move_before(old, next)
                     : parent.insert_child_before(m_level.element, next);
    else if (isFirst)
        m_last = old ? parent.append_move(old) : parent.append_child(m_level.element);
    else
        m_last = old ? parent.insert_move_after(old, m_last)
                     : parent.insert_child_after(m_level.element, m_last);
    setAttribute(m_last, "ID", id);
    return m_last;
}

pugi::xml_node LevelElements::first(const pugi::xml_node &parent) const
{
    const pugi::xml_node child = parent.child(m_level.element);
    return child ? child : parent.child(categoryList); // which stands behind the views
}

void LevelElements::removeRest()
{
    for (pugi::xml_node element : std::as_const(m_old))
        element.parent().remove_child(element);
    m_old.clear();
}

using Elements = std::vector<LevelElements>; // one for each of the levels

Elements elementsOf(const pugi::xml_node &root)
{
    Elements elements;
    for (const Level &level : levels)
        elements.emplace_back(root, level);
    return elements;
}

QuickNavLink readLink(const pugi::xml_node &link)
{
    return {.book = valueOf(link.attribute("Book")),
            .page = valueOf(link.attribute("Page")),
            .title = textOf(link.child("Link_Title")),
            .anchor = textOf(link.child("Link_Anchor")),
            .id = valueOf(link.attribute("ID"))};
}

QList<QuickNavNode> readNodes(const pugi::xml_node &parent, std::size_t depth)
{
    QList<QuickNavNode> nodes;
    if (depth == linkLevel)
        return nodes;
    for (const pugi::xml_node &element : parent.children(levels.at(depth).element)) {
        QuickNavNode node{.id = valueOf(element.attribute("ID")),
                          .name = textOf(element.child(levels.at(depth).name)),
                          .children = readNodes(element, depth + 1),
                          .links = {}};
        if (depth + 1 == linkLevel) {
            for (const pugi::xml_node &link : element.children("Link"))
                node.links.append(readLink(link));
        }
        nodes.append(node);
    }
    return nodes;
}

// Raises 5 for what the file has no place for.
void reserveIds(Elements &elements, const QList<QuickNavNode> &nodes, std::size_t depth)
{
    if (depth == linkLevel && !nodes.isEmpty())
        throw QvError(InvalidCall, {}, u"A category can hold links only, no further levels."_s);
    for (const QuickNavNode &node : nodes) {
        if (depth + 1 < linkLevel && !node.links.isEmpty())
            throw QvError(InvalidCall, {}, u"Only a category can hold links."_s);
        elements.at(depth).reserve(node.id);
        for (const QuickNavLink &link : node.links)
            elements.at(linkLevel).reserve(link.id);
        reserveIds(elements, node.children, depth + 1);
    }
}

void writeLink(const pugi::xml_node &element, const QuickNavLink &link)
{
    setAttribute(element, "Book", link.book);
    setAttribute(element, "Page", link.page);
    setChild(element, "Link_Title", link.title);
    setChild(element, "Link_Anchor", link.anchor);
}

void writeNodes(Elements &elements, const pugi::xml_node &parent, const QList<QuickNavNode> &nodes,
                std::size_t depth)
{
    for (const QuickNavNode &node : nodes) {
        const pugi::xml_node element = elements.at(depth).place(parent, node.id);
        setChild(element, levels.at(depth).name, node.name);
        writeNodes(elements, element, node.children, depth + 1);
        for (const QuickNavLink &link : node.links)
            writeLink(elements.at(linkLevel).place(element, link.id), link);
    }
}

void writeCategories(pugi::xml_node root, const QStringList &categories)
{
    pugi::xml_node list = root.child(categoryList);
    if (!list)
        list = root.append_child(categoryList);
    RewrittenList rewritten(list, "QuickNav_Category", textOf);
    for (const QString &category : categories)
        setText(rewritten.place(category), category);
    rewritten.removeRest();
}

pugi::xml_document loadOrMake(FileSystem &files, const QString &path)
{
    if (files.exists(path))
        return loadXml(files, path, rootName);
    pugi::xml_document document;
    document.append_child(rootName).append_child(categoryList);
    return document;
}

bool isAt(const QuickNavLink &link, const QuickNavTarget &place)
{
    return link.book.compare(place.book, Qt::CaseInsensitive) == 0
           && (place.page.isEmpty() || link.page == place.page);
}

int redirect(QList<QuickNavNode> &nodes, const QuickNavTarget &from, const QuickNavTarget &to)
{
    int changed = 0;
    for (QuickNavNode &node : nodes) {
        for (QuickNavLink &link : node.links) {
            if (!isAt(link, from))
                continue;
            const QuickNavLink old = link;
            link.book = to.book;
            link.page = to.page.isEmpty() ? link.page : to.page;
            changed += link == old ? 0 : 1;
        }
        changed += redirect(node.children, from, to);
    }
    return changed;
}

} // namespace

bool operator==(const QuickNavNode &a, const QuickNavNode &b)
{
    return a.id == b.id && a.name == b.name && a.links == b.links && a.children == b.children;
}

bool operator==(const QuickNav &a, const QuickNav &b)
{
    return a.categories == b.categories && a.views == b.views;
}

QuickNav readQuickNav(Session &session, FileSystem &files, const QString &project)
{
    const QString path = projectFolder(session.serverPath, project) + ProjectFile::quickNav;
    if (!files.exists(path))
        return {};

    const pugi::xml_document document = loadXml(files, path, rootName);
    const pugi::xml_node root = document.document_element();
    elementsOf(root); // gives ids to those that have none
    return {.views = readNodes(root, 0),
            .categories = textsOf(root.child(categoryList), "QuickNav_Category")};
}

void writeQuickNav(Session &session, FileSystem &files, const QString &project,
                   const QuickNav &quickNav)
{
    const QString base = projectFolder(session.serverPath, project);
    const QString path = base + ProjectFile::quickNav;
    const pugi::xml_document document = loadOrMake(files, path);
    const pugi::xml_node root = document.document_element();
    Elements elements = elementsOf(root);
    reserveIds(elements, quickNav.views, 0);
    writeNodes(elements, root, quickNav.views, 0);
    for (auto level = elements.rbegin(); level != elements.rend(); ++level)
        level->removeRest(); // what stands deepest goes first
    for (const LevelElements &level : elements)
        level.store(root);
    writeCategories(root, quickNav.categories);

    FileHelpers(session, files).mbCreateFilePath(withoutBackslash(parentFolder(path)));
    backUp(files, base, ProjectFile::quickNav);
    saveXml(files, path, document);
}

int redirectLinks(QuickNav &quickNav, const QuickNavTarget &from, const QuickNavTarget &to)
{
    return redirect(quickNav.views, from, to);
}
