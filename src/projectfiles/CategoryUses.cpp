#include "projectfiles/CategoryUses.h"

#include "platform/Paths.h"
#include "platform/Xml.h"
#include "projectfiles/TableOfContents.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto tocRoot = "QV_Master";

bool isSame(const QString &a, const QString &b)
{
    return a.trimmed().compare(b.trimmed(), Qt::CaseInsensitive) == 0;
}

QList<pugi::xml_node> namesIn(const pugi::xml_node &list)
{
    QList<pugi::xml_node> names;
    for (const pugi::xml_node &child : list.children()) {
        if (child.type() == pugi::node_element)
            names.append(child);
    }
    return names;
}

/// One list of names; true when it changed.
bool replaceIn(pugi::xml_node list, const QString &name, const QString &now)
{
    bool changed = false;
    bool hasNew = now.isEmpty();
    for (const pugi::xml_node &entry : namesIn(list))
        hasNew |= !isSame(textOf(entry), name) && isSame(textOf(entry), now);
    for (const pugi::xml_node &entry : namesIn(list)) {
        if (!isSame(textOf(entry), name))
            continue;
        if (hasNew)
            list.remove_child(entry);
        else
            setText(entry, now);
        hasNew = true;
        changed = true;
    }
    return changed;
}

void replaceInToc(FileSystem &files, const QString &folder, const QString &name, const QString &now)
{
    const pugi::xml_document toc = loadXml(files, folder + ProjectFile::toc, tocRoot);
    const pugi::xml_node root = toc.document_element();
    bool changed = replaceIn(root.child("QV").child("QV_Categories"), name, now);
    for (const pugi::xml_node &book : root.child("QV_Books").children("Book"))
        changed |= replaceIn(book.child("Book_Categories"), name, now);
    if (changed)
        saveXml(files, folder + ProjectFile::toc, toc);
}

void replaceInBook(FileSystem &files, const QString &folder, const QString &relative,
                   const QString &name, const QString &now)
{
    const pugi::xml_document book = loadXml(files, folder + relative, "Book_Master");
    if (replaceIn(book.document_element().child("Book").child("Book_Categories"), name, now))
        saveXml(files, folder + relative, book);
}

} // namespace

void replaceCategory(Session &session, FileSystem &files, const QString &project,
                     const QString &name, const QString &now)
{
    const QString folder = projectFolder(session.serverPath, project);
    for (const TocBook &book : TableOfContents(session, files).read(project).books) {
        const auto path = insideOf(folder, book.folder + u'\\' + book.file);
        if (path && files.fileExists(*path))
            replaceInBook(files, folder, path->sliced(folder.size()), name, now);
    }
    replaceInToc(files, folder, name, now);
}

void listCategory(Session &session, FileSystem &files, const QString &project, const QString &name)
{
    const QString folder = projectFolder(session.serverPath, project);
    const pugi::xml_document toc = loadXml(files, folder + ProjectFile::toc, tocRoot);
    const pugi::xml_node list = toc.document_element().child("QV").child("QV_Categories");
    const QList<pugi::xml_node> listed = namesIn(list);
    for (const pugi::xml_node &entry : listed) {
        if (isSame(textOf(entry), name))
            return;
    }
    if (!list)
        return;
    appendText(list, listed.isEmpty() ? "QV_Category" : listed.first().name(), name);
    saveXml(files, folder + ProjectFile::toc, toc);
}
