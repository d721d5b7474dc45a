#include "controls/books/BookCommands.h"

#include "controls/books/KeyWordCommands.h"
#include "platform/Clock.h"
#include "platform/FileSystem.h"
#include "platform/Paths.h"
#include "platform/QvError.h"
#include "platform/TreeWalker.h"
#include "startup/PageText.h"
#include "startup/Session.h"
#include "tools/html/HtmlScan.h"

#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
bool isPage(const QString &file)
{
    return file.endsWith(".htm"_L1, Qt::CaseInsensitive)
           || file.endsWith(".html"_L1, Qt::CaseInsensitive);
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

bool BookCommands::create(const TocBook &entry)
{
    return m_session.perform(tr("Create book %1").arg(entry.name), [&](StagedFiles &files) {
        BookFile file(m_values, files);
        const QString project = m_session.projectName();
        Book book = emptyBook(entry);
        if (files.exists(file.folder(project, entry) + entry.file))
            book.pages = file.read(project, entry).pages;
        file.write(project, entry, book);
        TableOfContents(m_values, files).addBook(project, entry);
    });
}

bool BookCommands::createMissingFile(const TocBook &entry)
{
    return m_session.perform(tr("Create the file of %1").arg(entry.name), [&](StagedFiles &files) {
        BookFile file(m_values, files);
        const QString path = file.folder(m_session.projectName(), entry) + entry.file;
        if (files.exists(path))
            throw QvError(PathFileAccess, {}, tr("There is a file already: %1").arg(path));
        file.write(m_session.projectName(), entry, emptyBook(entry));
    });
}

bool BookCommands::change(const TocBook &old, const TocBook &now)
{
    const bool renamed = old.name != now.name || old.acronym != now.acronym;
    const QString name = (renamed                            ? tr("Rename book %1")
                          : old.categories != now.categories ? tr("Change categories of %1")
                                                             : tr("Change book %1"))
                             .arg(old.name);
    return m_session.perform(name, [&](StagedFiles &files) {
        TableOfContents(m_values, files).changeBook(m_session.projectName(), old, now);
        if (renamed)
            renameInFile(files, old, now);
        if (old.acronym != now.acronym)
            redirect(files, old, now);
    });
}

void BookCommands::renameInFile(StagedFiles &files, const TocBook &old, const TocBook &now)
{
    BookFile file(m_values, files);
    const QString project = m_session.projectName();
    if (!files.fileExists(file.folder(project, old) + old.file))
        return;
    Book book = file.read(project, old);
    book.name = now.name;
    book.acronym = now.acronym;
    book.dateChanged = emptyBook(now).dateChanged;
    file.write(project, now, book);
}

// Quick navigation and keywords mean a book by its acronym; a twin keeps what was its own.
void BookCommands::redirect(StagedFiles &files, const TocBook &old, const TocBook &now)
{
    const QString project = m_session.projectName();
    const QList<TocBook> &books = m_session.books();
    const bool hasTwin = std::any_of(books.cbegin(), books.cend(), [&](const TocBook &book) {
        return book.acronym == old.acronym && identityOf(book) != identityOf(old);
    });
    if (hasTwin)
        return;
    QuickNav quickNav = readQuickNav(m_values, files, project);
    if (redirectLinks(quickNav, {old.acronym, {}}, {now.acronym, {}}) > 0)
        writeQuickNav(m_values, files, project, quickNav);
    KeyWordCommands::redirect(m_session, files, old.acronym, now.acronym);
}

bool BookCommands::move(const TocBook &entry, int to)
{
    return m_session.perform(tr("Move book %1").arg(entry.name), [&](StagedFiles &files) {
        TableOfContents(m_values, files).moveBook(m_session.projectName(), entry, to);
    });
}

bool BookCommands::remove(const TocBook &entry, bool alsoFiles)
{
    const QString kept = alsoFiles ? folderKeptBecause(entry) : QString();
    if (!kept.isEmpty())
        throw QvError(PathFileAccess, {}, kept);
    const QString name = alsoFiles ? tr("Delete book %1") : tr("Take book %1 out of the project");
    return m_session.perform(name.arg(entry.name), [&](StagedFiles &files) {
        TableOfContents(m_values, files).removeBook(m_session.projectName(), entry);
        if (!alsoFiles)
            return;
        KeyWordCommands::forgetPages(m_session, files, entry, std::nullopt);
        const QString folder =
            withoutBackslash(BookFile(m_values, files).folder(m_session.projectName(), entry));
        if (files.exists(folder))
            files.setAside(folder, m_session.binPlace(lastComponent(folder)));
    });
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
