#include "viewer/SetContents.h"

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "platform/Xml.h"
#include "projectfiles/BookFile.h"
#include "projectfiles/GlobalBook.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr auto quickNavIndex = "QuickNav\\QuickNav.xml"_L1;

QString titled(const QString &title, const QString &file)
{
    return title.trimmed().isEmpty() ? file : title;
}

/// The heading of that title below `entries`, which is made if need be.
ContentsEntry &heading(QList<ContentsEntry> &entries, const QString &title)
{
    const auto known = std::find_if(entries.begin(), entries.end(),
                                    [&](const ContentsEntry &one) { return one.title == title; });
    return known != entries.end() ? *known : entries.emplaceBack(ContentsEntry{title, {}});
}

ViewerPlace targetOfEntry(const QString &set, const QString &target)
{
    const qsizetype mark = target.lastIndexOf(u'#');
    return mark < 0 ? ViewerPlace{set, target}
                    : ViewerPlace{set, target.first(mark), target.sliced(mark + 1)};
}

} // namespace

SetContents::SetContents(Session &session, FileSystem &files, QString set)
    : m_session(session)
    , m_files(files)
    , m_set(std::move(set))
{
}

QList<TocBook> SetContents::books() const
{
    return TableOfContents(m_session, m_files).read(m_set).books;
}

QList<ContentsEntry> SetContents::pages(const TocBook &book) const
{
    return entriesOf(book, BookFile(m_session, m_files).read(m_set, book).pages);
}

QList<ContentsEntry> SetContents::entriesOf(const TocBook &book, const QList<BookPage> &pages) const
{
    QList<ContentsEntry> entries;
    for (const BookPage &page : pages)
        entries.append({titled(page.title, page.file),
                        {m_set, withBackslash(book.folder) + page.file},
                        entriesOf(book, page.pages)});
    return entries;
}

QList<ContentsEntry> SetContents::globalPages() const
{
    QList<ContentsEntry> entries;
    for (const GlobalPage &page : readGlobalPages(m_session, m_files, m_set))
        entries.append({titled(page.title, page.file),
                        {m_set, withBackslash(ProjectFile::globalFolder) + page.file}});
    return entries;
}

QList<ContentsEntry> SetContents::quickNavigation() const
{
    const QString path = projectFolder(m_session.serverPath, m_set) + quickNavIndex;
    if (!m_files.exists(path))
        throw QvError(FileNotFound, {},
                      QCoreApplication::translate(
                          "SetContents", "The quick navigation of this set is not built yet."));
    const pugi::xml_document document = loadXml(m_files, path, "QV_QuickNav_Index");
    QList<ContentsEntry> views;
    for (const pugi::xml_node entry : document.document_element().children("Entry")) {
        QList<ContentsEntry> *level = &views;
        for (const char *name : std::array{"View", "Group", "Topic", "Category"})
            level = &heading(*level, valueOf(entry.attribute(name))).entries;
        const QString target = textOf(entry.child("Entry_Target"));
        level->append(
            {titled(textOf(entry.child("Entry_Title")), target), targetOfEntry(m_set, target)});
    }
    return views;
}
