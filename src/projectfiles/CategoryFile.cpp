#include "projectfiles/CategoryFile.h"

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "platform/Xml.h"
#include "projectfiles/FileElements.h"

using namespace Qt::StringLiterals;

namespace {

/// The root is named as the file: "QV_BookCategories" or "QV_DefaultCategories".
QByteArray rootOf(const QString &path)
{
    return lastComponent(path).section(u'.', 0, 0).toUtf8();
}

pugi::xml_document loadOrMake(FileSystem &files, const QString &path)
{
    if (files.exists(path))
        return loadXml(files, path, rootOf(path).constData());
    pugi::xml_document document;
    document.append_child(rootOf(path).constData());
    return document;
}

void writeCategory(pugi::xml_node element, const Category &category)
{
    setChild(element, "Category_Name", category.name);
    setChild(element, "Category_Description", category.description);
}

} // namespace

CategoryFile::CategoryFile(FileSystem &files)
    : m_files(files)
{
}

QList<Category> CategoryFile::read(const QString &path)
{
    const pugi::xml_document document = loadXml(m_files, path, rootOf(path).constData());
    giveIds(document.document_element(), "Category", u'C');
    QList<Category> categories;
    for (const pugi::xml_node &element : document.document_element().children("Category"))
        categories.append({.id = idOf(element),
                           .name = textOf(element.child("Category_Name")),
                           .description = textOf(element.child("Category_Description"))});
    return categories;
}

void CategoryFile::write(const QString &path, const QList<Category> &categories)
{
    const pugi::xml_document document = loadOrMake(m_files, path);
    rewriteList(document.document_element(), "Category", u'C', categories, writeCategory);
    saveXml(m_files, path, document);
}
