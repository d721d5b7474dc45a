#include "projectfiles/BookFile.h"

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "platform/Xml.h"
#include "projectfiles/Backup.h"
#include "projectfiles/BookOutline.h"
#include "projectfiles/FileElements.h"
#include "startup/FileHelpers.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto rootName = "Book_Master";

QString inside(const QString &base, const QString &value, const QString &what)
{
    const std::optional<QString> path = insideOf(base, value);
    if (!path || value.isEmpty())
        throw QvError(PathFileAccess, {}, what.arg(value, base));
    return *path;
}

BookSource readSource(const pugi::xml_node &source)
{
    return {.kind = valueOf(source.attribute("Kind")),
            .path = textOf(source.child("Source_Path")),
            .date = textOf(source.child("Source_Date")),
            .sum = textOf(source.child("Source_Sum")),
            .page = textOf(source.child("Source_Page")),
            .pageSum = textOf(source.child("Source_Page_Sum"))};
}

Book readHeader(const pugi::xml_node &header)
{
    return {.name = textOf(header.child("Book_Name")),
            .acronym = textOf(header.child("Book_Acro")),
            .key = textOf(header.child("Book_Key")),
            .path = textOf(header.child("Book_Path")),
            .language = textOf(header.child("Book_Language")),
            .dateChanged = textOf(header.child("Book_Date_Changed")),
            .pages = {},
            .sources = {}};
}

void writeHeader(pugi::xml_node header, const Book &book)
{
    setChild(header, "Book_Name", book.name);
    setChild(header, "Book_Acro", book.acronym);
    setChild(header, "Book_Key", book.key);
    setChild(header, "Book_Path", book.path);
    setChild(header, "Book_Language", book.language);
    setChild(header, "Book_Date_Changed", book.dateChanged);
}

void writeSource(pugi::xml_node element, const BookSource &source)
{
    setAttribute(element, "Kind", source.kind);
    setChild(element, "Source_Path", source.path);
    setChild(element, "Source_Date", source.date);
    setChild(element, "Source_Sum", source.sum);
    setChild(element, "Source_Page", source.page);
    if (source.pageSum.isEmpty())
        element.remove_child("Source_Page_Sum");
    else
        setChild(element, "Source_Page_Sum", source.pageSum);
}

QString sourceKey(const BookSource &source)
{
    return source.kind + u'|' + source.path;
}

void writeSources(pugi::xml_node master, const QList<BookSource> &sources)
{
    pugi::xml_node list = master.child("Book_Sources");
    if (!list)
        list = master.append_child("Book_Sources");
    RewrittenList rewritten(list, "Source",
                            [](const pugi::xml_node &old) { return sourceKey(readSource(old)); });
    for (const BookSource &source : sources)
        writeSource(rewritten.place(sourceKey(source)), source);
    rewritten.removeRest();
}

pugi::xml_document loadOrMake(FileSystem &files, const QString &path)
{
    if (files.exists(path))
        return loadXml(files, path, rootName);
    pugi::xml_document document;
    document.append_child(rootName).append_child("Book");
    return document;
}

} // namespace

BookFile::BookFile(Session &session, FileSystem &files)
    : m_session(session)
    , m_files(files)
{
}

Book BookFile::read(const QString &project, const TocBook &entry)
{
    const QString path = bookPath(project, entry);
    const pugi::xml_document document = loadXml(m_files, path, rootName);
    const pugi::xml_node master = document.document_element();
    Book book = readHeader(requiredChild(master, "Book", path));
    book.pages = readOutline(master.child("Book_Pages"), path);
    for (const pugi::xml_node &source : master.child("Book_Sources").children("Source"))
        book.sources.append(readSource(source));
    return book;
}

void BookFile::write(const QString &project, const TocBook &entry, const Book &book)
{
    const QString path = bookPath(project, entry);
    const pugi::xml_document document = loadOrMake(m_files, path);
    const pugi::xml_node master = document.document_element();
    writeHeader(requiredChild(master, "Book", path), book);
    writeOutline(master, book.pages);
    writeSources(master, book.sources);

    FileHelpers(m_session, m_files).mbCreateFilePath(withoutBackslash(parentFolder(path)));
    const QString base = projectFolder(m_session.serverPath, project);
    backUp(m_files, base, path.sliced(base.size()));
    saveXml(m_files, path, document);
}

QString BookFile::folder(const QString &project, const TocBook &entry) const
{
    return withBackslash(inside(projectFolder(m_session.serverPath, project), entry.folder,
                                u"The book's folder %1 does not lie in the project %2"_s));
}

QString BookFile::pagePath(const QString &project, const TocBook &entry, const QString &file) const
{
    return inside(folder(project, entry), file,
                  u"The file %1 does not lie in the book's folder %2"_s);
}

QString BookFile::bookPath(const QString &project, const TocBook &entry) const
{
    return pagePath(project, entry, entry.file);
}
