#include "projectfiles/GlobalBook.h"

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "platform/Xml.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto rootName = "Book_Master";

QString globalFolder(const Session &session, const QString &project)
{
    return projectFolder(session.serverPath, project) + ProjectFile::globalFolder + u'\\';
}

pugi::xml_document newGlobalBook(const QString &projectName)
{
    pugi::xml_document document;
    pugi::xml_node master = document.append_child(rootName);
    const pugi::xml_node header = master.append_child("Book");
    appendText(header, "Book_Name", u"Global Information"_s);
    appendText(header, "Book_Acro", u"GLOBAL"_s);
    appendText(header, "Book_Key", projectName);
    appendText(header, "Book_Path",
               u"Docs\\"_s + projectName + u'\\' + ProjectFile::globalFolder + u'\\');
    master.append_child("Global_Pages");
    return document;
}

class GlobalBookInFile final : public GlobalInformation
{
public:
    explicit GlobalBookInFile(FileSystem &files)
        : m_files(files)
    {
    }

    void createGlobalBook(const QString &folder, const QString &projectName) override
    {
        const QString path = folder + ProjectFile::globalBook;
        if (m_files.exists(path))
            throw QvError(PathFileAccess, {}, u"The global book is there already: "_s + path);
        saveXml(m_files, path, newGlobalBook(projectName));
    }

private:
    FileSystem &m_files;
};

} // namespace

QList<GlobalPage> readGlobalPages(Session &session, FileSystem &files, const QString &project)
{
    const QString path = globalFolder(session, project) + ProjectFile::globalBook;
    QList<GlobalPage> pages;
    if (!files.exists(path))
        return pages;

    const pugi::xml_document document = loadXml(files, path, rootName);
    for (const pugi::xpath_node &page : document.select_nodes("Book_Master/Global_Pages/Page"))
        pages.append({.id = valueOf(page.node().attribute("ID")),
                      .type = valueOf(page.node().attribute("Type")),
                      .title = textOf(page.node().child("Page_Title")),
                      .file = textOf(page.node().child("Page_File"))});
    return pages;
}

std::unique_ptr<GlobalInformation> makeGlobalInformation(FileSystem &files)
{
    return std::make_unique<GlobalBookInFile>(files);
}

void makeGlobalBookIfMissing(Session &session, FileSystem &files, GlobalInformation &component)
{
    const QString folder = globalFolder(session, session.projectName);
    if (files.exists(folder + ProjectFile::globalBook))
        return;
    if (!files.folderExists(folder))
        files.makeFolder(folder);
    component.createGlobalBook(folder, session.projectName);
}
