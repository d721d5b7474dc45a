#include "controls/books/BookCommands.h"

#include "platform/Clock.h"
#include "platform/FileSystem.h"
#include "platform/Paths.h"
#include "platform/QvError.h"
#include "platform/TreeWalker.h"
#include "startup/PageText.h"
#include "startup/Session.h"
#include "tools/HtmlScan.h"

#include <QSet>

using namespace Qt::StringLiterals;

namespace {
bool isPage(const QString &file)
{
    return file.endsWith(".htm"_L1, Qt::CaseInsensitive)
           || file.endsWith(".html"_L1, Qt::CaseInsensitive);
}

/// Runs `body`; when it fails, runs `undo` and lets the error go on.
template <typename Undo, typename Body>
void orElse(Undo &&undo, Body &&body)
{
    const auto undone = [&](const QvError &error) {
        undo();
        throw error;
    };
    trap(undone, body);
}

bool overlap(const QString &a, const QString &b)
{
    return a.startsWith(b, Qt::CaseInsensitive) || b.startsWith(a, Qt::CaseInsensitive);
}
} // namespace

BookCommands::BookCommands(ProjectSession &session)
    : m_session(session)
    , m_values(session.program().session)
    , m_files(session.program().files)
{
}

void BookCommands::create(const TocBook &entry)
{
    BookFile file(m_values, m_files);
    const QString project = m_session.projectName();
    const QString folder = file.folder(project, entry);
    const bool hadFolder = m_files.folderExists(folder);
    const bool hadFile = m_files.exists(folder + entry.file);
    Book book = emptyBook(entry);
    if (hadFile)
        book.pages = file.read(project, entry).pages;

    const auto takeBack = [&] {
        if (mayBeListed(entry))
            return;
        if (!hadFile && m_files.exists(folder + entry.file))
            m_files.removeFile(folder + entry.file);
        if (!hadFolder && m_files.folderExists(folder))
            m_files.removeFolder(folder);
    };
    orElse(takeBack, [&] {
        file.write(project, entry, book);
        TableOfContents(m_values, m_files).addBook(project, entry);
    });
    m_session.rereadBooks();
}

// The list may be written and only not be flushed: what it names must stay.
bool BookCommands::mayBeListed(const TocBook &entry)
{
    bool listed = true;
    trap([](const QvError &) {},
         [&] {
             const Toc toc = TableOfContents(m_values, m_files).read(m_session.projectName());
             listed = toc.books.contains(entry);
         });
    return listed;
}

void BookCommands::createMissingFile(const TocBook &entry)
{
    BookFile file(m_values, m_files);
    const QString path = file.folder(m_session.projectName(), entry) + entry.file;
    if (m_files.exists(path))
        throw QvError(PathFileAccess, {}, u"There is a file already: "_s + path);
    file.write(m_session.projectName(), entry, emptyBook(entry));
    m_session.forgetBook(entry);
}

void BookCommands::change(const TocBook &old, const TocBook &now)
{
    const QString project = m_session.projectName();
    TableOfContents toc(m_values, m_files);
    toc.changeBook(project, old, now);
    const bool renamed = old.name != now.name || old.acronym != now.acronym;
    orElse([&] { toc.changeBook(project, now, old); },
           [&] {
               BookFile file(m_values, m_files);
               if (!renamed || !m_files.fileExists(file.folder(project, old) + old.file))
                   return;
               Book book = file.read(project, old);
               book.name = now.name;
               book.acronym = now.acronym;
               book.dateChanged = emptyBook(now).dateChanged;
               file.write(project, now, book);
           });
    m_session.bookWasRenamed(old, now);
}

void BookCommands::remove(const TocBook &entry, bool alsoFiles)
{
    const QString project = m_session.projectName();
    TableOfContents toc(m_values, m_files);
    const QString kept = alsoFiles ? folderKeptBecause(entry) : QString();
    if (!kept.isEmpty())
        throw QvError(PathFileAccess, {}, kept);

    const qsizetype place = m_session.books().indexOf(entry);
    toc.removeBook(project, entry);
    const QString folder =
        alsoFiles ? withoutBackslash(BookFile(m_values, m_files).folder(project, entry))
                  : QString();
    const auto listAgain = [&] {
        // Only when the deletion did not even begin; a folder that is half gone is not a book.
        if (m_files.folderExists(folder)) {
            toc.addBook(project, entry);
            toc.moveBook(project, entry, static_cast<int>(place));
        }
        m_session.rereadBooks();
    };
    orElse(listAgain, [&] {
        if (alsoFiles && m_files.exists(folder))
            deleteTree(m_files, folder);
    });
    m_session.forgetBook(entry);
    m_session.rereadBooks();
}

QString BookCommands::folderKeptBecause(const TocBook &entry)
{
    const QString base = m_session.folder();
    const auto folder = insideOf(base, entry.folder);
    if (!folder || withBackslash(*folder) == base)
        return u"The folder \"%1\" of this book does not lie inside the project."_s.arg(
            entry.folder);
    for (const TocBook &other : m_session.books()) {
        const auto taken = insideOf(base, other.folder);
        if (other != entry && taken && overlap(withBackslash(*taken), withBackslash(*folder)))
            return u"The book \"%1\" lies in the same folder."_s.arg(other.name);
    }
    QString path = base;
    for (const QString &piece : withoutBackslash(*folder).sliced(base.size()).split(u'\\')) {
        path += piece;
        const FileKind kind = m_files.status(path).kind;
        if (kind != FileKind::Folder && kind != FileKind::Missing)
            return u"%1 is a link or no folder."_s.arg(path);
        path += u'\\';
    }
    return {};
}

QStringList BookCommands::unlistedPages(const TocBook &entry)
{
    QSet<QString> listed;
    for (const BookPage &page : flattened(m_session.book(entry).pages))
        listed.insert(page.file.toLower().replace(u'/', u'\\'));
    const QString folder = BookFile(m_values, m_files).folder(m_session.projectName(), entry);
    QStringList found;
    walkTree(m_files, withoutBackslash(folder), [&](const TreeEntry &file) {
        if (file.status.kind == FileKind::File && isPage(file.relative)
            && !listed.contains(file.relative.toLower()))
            found.append(file.relative);
    });
    return found;
}

QStringList BookCommands::titlesOf(const TocBook &entry, const QStringList &files,
                                   const Progress &progress)
{
    const BookFile book(m_values, m_files);
    QStringList titles;
    for (const QString &file : files) {
        progress.step(static_cast<int>(titles.size()), static_cast<int>(files.size()), file);
        titles.append(titleOf(book.pagePath(m_session.projectName(), entry, file)));
    }
    return titles;
}

void BookCommands::listPages(const TocBook &entry, const QStringList &files,
                             const QStringList &titles)
{
    Book book = m_session.book(entry);
    for (qsizetype i = 0; i < files.size(); ++i)
        book.pages.append({{}, titles.at(i), files.at(i), {}, {}});
    write(entry, book);
}

void BookCommands::write(const TocBook &entry, const Book &book)
{
    if (m_session.changedOnDisk(entry)) {
        m_session.forgetBook(entry);
        throw QvError(PathFileAccess, {},
                      u"Another author changed the book \"%1\" meanwhile. It has been read again; "
                      "please repeat the change."_s.arg(entry.name));
    }
    Book dated = book;
    dated.dateChanged = emptyBook(entry).dateChanged;
    BookFile(m_values, m_files).write(m_session.projectName(), entry, dated);
    m_session.forgetBook(entry);
}

Book BookCommands::emptyBook(const TocBook &entry) const
{
    Book book;
    book.name = entry.name;
    book.acronym = entry.acronym;
    book.key = m_session.projectName();
    book.path = u"Docs\\%1\\%2\\"_s.arg(m_session.projectName(), entry.folder);
    book.language = m_values.projectLanguage;
    book.dateChanged = m_session.program().clock.now().date().toString(Qt::ISODate);
    return book;
}

QString BookCommands::titleOf(const QString &path) const
{
    const PageText page = decodePage(m_files.readFile(path), m_values.projectLanguage);
    const HtmlFacts facts = scanHtml(page.text);
    if (!facts.title.isEmpty())
        return facts.title;
    return facts.firstHeading.isEmpty() ? lastComponent(path) : facts.firstHeading;
}
