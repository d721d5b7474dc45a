#include "projectfiles/TocMerge.h"

#include "platform/Xml.h"
#include "projectfiles/FileElements.h"

#include <string_view>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr auto suffix = "1"_L1;

using Identity = std::pair<QString, QString>; ///< name and acronym

void readBook(const pugi::xml_node &element, MergedBook &book, QString &type)
{
    for (const pugi::xml_node &child : element) {
        const std::string_view name = child.name();
        if (name == "Book_Name")
            book.name = textOf(child);
        else if (name == "Book_Acro")
            book.ownAcronym = textOf(child);
        else if (name == "Book_Folder")
            book.folder = textOf(child);
        else if (name == "Book_File") {
            book.file = textOf(child);
            type = valueOf(child.first_attribute());
        }
    }
}

} // namespace

QStringList bookFoldersOf(const pugi::xml_document &toc)
{
    QStringList folders;
    for (const pugi::xpath_node &folder : toc.select_nodes("//Book/Book_Folder"))
        folders.append(textOf(folder.node()));
    return folders;
}

TocMerge::TocMerge(pugi::xml_document merged, QString project)
    : m_document(std::move(merged))
    , m_project(std::move(project))
{
    pugi::xml_node root = m_document.document_element();
    m_books = root.child("QV_Books");
    if (!m_books)
        m_books = root.append_child("QV_Books");
    for (const pugi::xml_node &list : root.children("QV_Books")) {
        for (const pugi::xml_node &book : list.children("Book"))
            note(book);
    }
}

QList<MergedBook> TocMerge::ReadBookNodesfromQVTOC(const pugi::xml_document &source)
{
    // A book is looked up by its name and the acronym it has there: the first of that identity.
    QHash<Identity, pugi::xml_node> originals;
    QList<MergedBook> books;
    for (const pugi::xpath_node &found : source.select_nodes("//Book")) {
        MergedBook book;
        QString type;
        readBook(found.node(), book, type);
        const Identity identity{book.name, book.ownAcronym};
        auto original = originals.constFind(identity);
        if (original == originals.constEnd())
            original = originals.insert(identity, found.node());
        book.acronym = RenameBookAcroIfSame(book.ownAcronym);
        if (!checkIfBookPresent(book.name, book.acronym)) {
            book.acronymDoubled = m_acronyms.contains(book.acronym);
            book.element = CreateBookNode(book, type, original->child("Book_Categories"));
        }
        books.append(book);
    }
    return books;
}

int TocMerge::bookCount() const
{
    int count = 0;
    for (const pugi::xml_node &list : m_document.document_element().children("QV_Books"))
        count += static_cast<int>(
            std::distance(list.children("Book").begin(), list.children("Book").end()));
    return count;
}

QString TocMerge::RenameBookAcroIfSame(const QString &acronym) const
{
    return m_acronyms.contains(acronym) ? acronym + suffix : acronym;
}

bool TocMerge::checkIfBookPresent(const QString &name, const QString &acronym) const
{
    return m_names.contains(name) && m_acronyms.contains(acronym);
}

pugi::xml_node TocMerge::CreateBookNode(const MergedBook &book, const QString &type,
                                        const pugi::xml_node &categories)
{
    pugi::xml_node element = m_books.append_child("Book");
    appendText(element, "Book_Name", book.name);
    appendText(element, "Book_Acro", book.acronym);
    setAttribute(appendText(element, "Book_Key", m_project), "id", {});
    appendText(element, "Book_Folder", book.folder);
    const pugi::xml_node file = appendText(element, "Book_File", book.file);
    if (!type.isEmpty())
        setAttribute(file, "type", type);
    if (categories)
        element.append_copy(categories);
    m_names.insert(book.name);
    m_acronyms.insert(book.acronym);
    return element;
}

void TocMerge::note(const pugi::xml_node &book)
{
    for (const pugi::xml_node &name : book.children("Book_Name"))
        m_names.insert(textOf(name));
    for (const pugi::xml_node &acronym : book.children("Book_Acro"))
        m_acronyms.insert(textOf(acronym));
}
