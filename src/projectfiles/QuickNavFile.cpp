#include "projectfiles/QuickNavFile.h"

#include "platform/Paths.h"
#include "platform/Xml.h"
#include "projectfiles/FileElements.h"

#include <array>

namespace {

struct Level
{
    const char *element;
    const char *name;
};
constexpr std::array<Level, 4> levels{{{"View", "View_Name"},
                                       {"Group", "Group_Name"},
                                       {"Topic", "Topic_Name"},
                                       {"Category", "Category_Name"}}};

QuickNavLink readLink(const pugi::xml_node &link)
{
    return {.book = valueOf(link.attribute("Book")),
            .page = valueOf(link.attribute("Page")),
            .title = textOf(link.child("Link_Title")),
            .anchor = textOf(link.child("Link_Anchor"))};
}

QList<QuickNavNode> readNodes(const pugi::xml_node &parent, std::size_t depth)
{
    QList<QuickNavNode> nodes;
    if (depth == levels.size())
        return nodes;
    for (const pugi::xml_node &element : parent.children(levels.at(depth).element)) {
        QuickNavNode node{.id = valueOf(element.attribute("ID")),
                          .name = textOf(element.child(levels.at(depth).name)),
                          .children = readNodes(element, depth + 1),
                          .links = {}};
        for (const pugi::xml_node &link : element.children("Link"))
            node.links.append(readLink(link));
        nodes.append(node);
    }
    return nodes;
}

} // namespace

QuickNav readQuickNav(Session &session, FileSystem &files, const QString &project)
{
    const QString path = projectFolder(session.serverPath, project) + ProjectFile::quickNav;
    if (!files.exists(path))
        return {};

    const pugi::xml_document document = loadXml(files, path, "QV_QuickNav");
    const pugi::xml_node root = document.document_element();
    return {.views = readNodes(root, 0),
            .categories = textsOf(root.child("QuickNav_Categories"), "QuickNav_Category")};
}
