#include "catalogue/CatalogueFile.h"

#include "platform/QvError.h"
#include "platform/Xml.h"

using namespace Qt::StringLiterals;

pugi::xml_document loadCatalogue(FileSystem &files, const QString &path)
{
    pugi::xml_document catalogue = loadXml(files, path, "QV_Selection_List");
    if (!catalogue.document_element().child("QVs"))
        throw QvError(PathFileAccess, {},
                      u"%1 cannot be read: the element QVs is missing"_s.arg(path));
    return catalogue;
}

pugi::xpath_node_set allNames(const pugi::xml_document &catalogue)
{
    return catalogue.select_nodes("//QV_Name");
}

QList<pugi::xml_node> allProjects(const pugi::xml_document &catalogue)
{
    QList<pugi::xml_node> all;
    for (const pugi::xml_node &projects : catalogue.document_element().children("QVs")) {
        for (const pugi::xml_node &project : projects.children("QV"))
            all.append(project);
    }
    return all;
}
