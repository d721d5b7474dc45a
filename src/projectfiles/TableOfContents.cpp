#include "projectfiles/TableOfContents.h"

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "platform/Xml.h"
#include "projectfiles/Backup.h"
#include "projectfiles/FileElements.h"
#include "projectfiles/TocBookElement.h"
#include "startup/FileHelpers.h"

#include <functional>

using namespace Qt::StringLiterals;

namespace {

constexpr auto rootName = "QV_Master";

QString headerText(const pugi::xml_node &header, const char *name, const QString &path)
{
    return textOf(requiredChild(header, name, path));
}

TocHeader readHeader(const pugi::xml_node &header, const QString &path)
{
    TocHeader read{.platform = headerText(header, "QV_Platform", path),
                   .variation = headerText(header, "QV_Variation", path),
                   .id = headerText(header, "QV_ID", path),
                   .dateProcess = headerText(header, "QV_Date_Process", path),
                   .dateMigration = headerText(header, "QV_Date_Migration", path),
                   .categories = {}};
    for (const pugi::xml_node &category : header.child("QV_Categories").children()) {
        if (category.type() == pugi::node_element)
            read.categories.append(textOf(category));
    }
    return read;
}

TocBook readBook(const pugi::xml_node &book)
{
    return {.name = textOf(book.child("Book_Name")),
            .acronym = textOf(book.child("Book_Acro")),
            .key = textOf(book.child("Book_Key")),
            .folder = textOf(book.child("Book_Folder")),
            .file = textOf(book.child("Book_File")),
            .type = valueOf(book.child("Book_File").attribute("type")),
            .categories = textsOf(book.child("Book_Categories"), "Book_Category")};
}

void writeType(pugi::xml_node file, const QString &type)
{
    if (type.isEmpty())
        file.remove_attribute("type");
    else
        setAttribute(file, "type", type);
}

void writeCategories(pugi::xml_node categories, const QStringList &names)
{
    while (categories.remove_child("Book_Category")) {
    }
    for (const QString &name : names)
        appendText(categories, "Book_Category", name);
}

pugi::xml_node bookElement(const pugi::xml_node &books, const TocBook &book)
{
    for (const pugi::xml_node &element : books.children("Book")) {
        if (identityOf(readBook(element)) == identityOf(book))
            return element;
    }
    throw QvError(InvalidCall, {},
                  u"The table of contents has no book %1 (%2)."_s.arg(book.name, book.acronym));
}

/// Raises 5 when another book than `except` has this text, without regard to case.
void requireFree(const pugi::xml_node &books, const char *child, const QString &text,
                 const pugi::xml_node &except = {})
{
    for (const pugi::xml_node &element : books.children("Book")) {
        const QString other = textOf(element.child(child));
        if (element != except && other.compare(text, Qt::CaseInsensitive) == 0)
            throw QvError(InvalidCall, {},
                          u"There is a book of that name or acronym already: "_s + other);
    }
}

/// Checks only what changes: merged sets may hold one name twice under two acronyms.
void requireFreeChange(const pugi::xml_node &books, const pugi::xml_node &element,
                       const TocBook &old, const TocBook &book)
{
    if (old.name.compare(book.name, Qt::CaseInsensitive) != 0)
        requireFree(books, "Book_Name", book.name, element);
    if (old.acronym.compare(book.acronym, Qt::CaseInsensitive) != 0)
        requireFree(books, "Book_Acro", book.acronym, element);
}

void moveTo(pugi::xml_node books, pugi::xml_node element, int to)
{
    QList<pugi::xml_node> others;
    for (const pugi::xml_node &other : books.children("Book")) {
        if (other != element)
            others.append(other);
    }
    if (to < 0 || to > others.size())
        throw QvError(InvalidCall, {}, u"The table of contents has no place %1."_s.arg(to));
    if (to < others.size())
        books.insert_move_before(element, others.at(to));
    else if (!others.isEmpty())
        books.insert_move_after(element, others.last());
}

} // namespace

void writeTocBook(pugi::xml_node element, const TocBook &book)
{
    setChild(element, "Book_Name", book.name);
    setChild(element, "Book_Acro", book.acronym);
    pugi::xml_node key = setChild(element, "Book_Key", book.key);
    if (!key.attribute("id"))
        key.append_attribute("id");
    setChild(element, "Book_Folder", book.folder);
    writeType(setChild(element, "Book_File", book.file), book.type);
    pugi::xml_node categories = element.child("Book_Categories");
    if (!categories)
        categories = element.append_child("Book_Categories");
    writeCategories(categories, book.categories);
}

QString identityOf(const TocBook &book)
{
    return book.acronym + u'\n' + book.name + u'\n' + book.folder;
}

TableOfContents::TableOfContents(Session &session, FileSystem &files)
    : m_session(session)
    , m_files(files)
{
}

bool TableOfContents::CreateQVTOCFile(const QString &path)
{
    XmlWriter writer;
    XmlAttributes attributes;
    writer.startElement(QString::fromLatin1(rootName));
    writer.startElement(u"QV"_s);
    for (const auto &tag : {u"QV_Platform"_s, u"QV_Variation"_s, u"QV_ID"_s, u"QV_Date_Process"_s,
                            u"QV_Date_Migration"_s})
        GenerateXMLTag(m_session, writer, attributes, tag, {});
    writer.endElement();
    GenerateXMLTag(m_session, writer, attributes, u"QV_Books"_s, {});
    writer.endElement();
    m_files.replaceFile(path, utf16Bytes(xmlDeclaration + u"\r\n"_s + writer.output()));
    return true;
}

Toc TableOfContents::read(const QString &project)
{
    const QString file = path(project);
    const pugi::xml_document document = loadXml(m_files, file, rootName);
    const pugi::xml_node root = document.document_element();
    Toc toc{.header = readHeader(requiredChild(root, "QV", file), file), .books = {}};
    for (const pugi::xml_node &book : requiredChild(root, "QV_Books", file).children("Book"))
        toc.books.append(readBook(book));
    return toc;
}

void TableOfContents::addBook(const QString &project, const TocBook &book)
{
    change(project, [&](pugi::xml_node books) {
        requireFree(books, "Book_Name", book.name);
        requireFree(books, "Book_Acro", book.acronym);
        writeTocBook(books.append_child("Book"), book);
    });
}

void TableOfContents::changeBook(const QString &project, const TocBook &old, const TocBook &book)
{
    change(project, [&](pugi::xml_node books) {
        const pugi::xml_node element = bookElement(books, old);
        requireFreeChange(books, element, old, book);
        writeTocBook(element, book);
    });
}

void TableOfContents::removeBook(const QString &project, const TocBook &book)
{
    change(project, [&](pugi::xml_node books) { books.remove_child(bookElement(books, book)); });
}

void TableOfContents::moveBook(const QString &project, const TocBook &book, int to)
{
    change(project, [&](pugi::xml_node books) { moveTo(books, bookElement(books, book), to); });
}

void TableOfContents::change(const QString &project,
                             const std::function<void(pugi::xml_node books)> &edit)
{
    const QString file = path(project);
    const pugi::xml_document document = loadXml(m_files, file, rootName);
    edit(requiredChild(document.document_element(), "QV_Books", file));
    backUp(m_files, projectFolder(m_session.serverPath, project), ProjectFile::toc);
    saveXml(m_files, file, document);
}

QString TableOfContents::path(const QString &project) const
{
    return projectFolder(m_session.serverPath, project) + ProjectFile::toc;
}
