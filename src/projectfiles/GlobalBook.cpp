#include "projectfiles/GlobalBook.h"

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "platform/Xml.h"
#include "projectfiles/Backup.h"
#include "projectfiles/FileElements.h"

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

/// The list of pages of a global book, which is appended when it is missing.
pugi::xml_node pageList(const pugi::xml_document &document)
{
    pugi::xml_node root = document.document_element();
    const pugi::xml_node list = root.child("Global_Pages");
    return list ? list : root.append_child("Global_Pages");
}

void writePage(pugi::xml_node element, const GlobalPage &page)
{
    setAttribute(element, "Type", page.type);
    setChild(element, "Page_Title", page.title);
    setChild(element, "Page_File", page.file);
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
    giveIds(document.document_element().child("Global_Pages"), "Page", u'G');
    for (const pugi::xpath_node &page : document.select_nodes("Book_Master/Global_Pages/Page"))
        pages.append({.id = idOf(page.node()),
                      .type = valueOf(page.node().attribute("Type")),
                      .title = textOf(page.node().child("Page_Title")),
                      .file = textOf(page.node().child("Page_File"))});
    return pages;
}

void writeGlobalPages(Session &session, FileSystem &files, const QString &project,
                      const QList<GlobalPage> &pages)
{
    const QString folder = globalFolder(session, project);
    const QString path = folder + ProjectFile::globalBook;
    const bool isThere = files.exists(path);
    const pugi::xml_document document =
        isThere ? loadXml(files, path, rootName) : newGlobalBook(project);
    rewriteList(pageList(document), "Page", u'G', pages, writePage);
    if (isThere)
        backUp(files, projectFolder(session.serverPath, project),
               ProjectFile::globalFolder + u"\\"_s + ProjectFile::globalBook);
    else if (!files.folderExists(folder))
        files.makeFolder(withoutBackslash(folder));
    saveXml(files, path, document);
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
