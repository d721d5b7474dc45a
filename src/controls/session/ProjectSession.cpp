#include "controls/session/ProjectSession.h"

#include "platform/FileSystem.h"
#include "platform/Paths.h"
#include "platform/QvError.h"
#include "platform/TreeWalker.h"
#include "startup/Session.h"

#include <utility>

namespace {
bool sameBook(const TocBook &a, const TocBook &b)
{
    return identityOf(a) == identityOf(b);
}

// What an interrupted deletion left behind is tidied away, but no folder of a listed book, whatever
// it is called. Failing to do so harms nobody.
void tidyUp(FileSystem &files, const QString &folder, const QList<TocBook> &books)
{
    QStringList inUse;
    for (const TocBook &book : books)
        inUse.append(QString(book.folder).replace(u'/', u'\\').section(u'\\', 0, 0));
    trap([](const QvError &) {}, [&] { removeLeftovers(files, folder, inUse); });
}
} // namespace

ProjectSession::ProjectSession(Program &program, QObject *parent)
    : QObject(parent)
    , m_program(program)
{
}

void ProjectSession::open(const QString &project)
{
    if (project == m_project)
        return;
    close();
    const auto staysClosed = [this](const QvError &error) {
        close();
        Q_EMIT wasReset();
        throw error;
    };
    trap(staysClosed, [&] {
        if (!project.isEmpty())
            readProject(project);
    });
    Q_EMIT wasReset();
}

void ProjectSession::close()
{
    m_project.clear();
    m_toc = {};
    m_book.reset();
    m_page.clear();
    forgetContents();
}

void ProjectSession::readProject(const QString &project)
{
    (void)existingProjectFolder(m_program.files, m_program.session.serverPath, project);
    m_project = project;
    readToc();
    tidyUp(m_program.files, folder(), m_toc.books);
}

void ProjectSession::readToc()
{
    // The stamp is taken first: a change while we read is then noticed rather than missed.
    const Stamp stamp = stampOf(folder() + ProjectFile::toc);
    m_toc = TableOfContents(m_program.session, m_program.files).read(m_project);
    m_tocStamp = stamp;
}

void ProjectSession::reread()
{
    if (m_project.isEmpty())
        return;
    readToc();
    forgetContents();
    followSelection();
    Q_EMIT wasReset();
}

void ProjectSession::rereadBooks()
{
    readToc();
    followSelection();
    Q_EMIT booksChanged();
}

void ProjectSession::noticeChanges()
{
    // Saying it makes the window active again, which looks again: each problem is said once.
    const auto sayOnce = [this](const QvError &error) {
        if (std::exchange(m_noticedProblem, error.description()) != error.description())
            throw error;
    };
    trap(sayOnce, [this] {
        rereadChanges();
        m_noticedProblem.clear();
    });
}

void ProjectSession::rereadChanges()
{
    if (m_project.isEmpty())
        return;
    if (stampOf(folder() + ProjectFile::toc) != m_tocStamp)
        rereadBooks();
    noticeBooks();
    const bool globalsOutdated =
        m_globals
        && stampOf(folder() + ProjectFile::globalFolder + u'\\' + ProjectFile::globalBook)
               != m_globalsStamp;
    if (globalsOutdated) {
        m_globals.reset();
        Q_EMIT booksChanged();
    }
    if (m_quickNav && stampOf(folder() + ProjectFile::quickNav) != m_quickNavStamp)
        forgetQuickNav();
}

void ProjectSession::noticeBooks()
{
    const QList<TocBook> entries = m_toc.books;
    for (const TocBook &entry : entries) {
        if (changedOnDisk(entry))
            forgetBook(entry);
    }
}

QString ProjectSession::folder() const
{
    return m_project.isEmpty() ? QString() : projectFolder(m_program.session.serverPath, m_project);
}

QString ProjectSession::shownPath(const QString &path) const
{
    QString shown = path;
    // Paths come out of files too, and some lead nowhere on this machine.
    trap([](const QvError &) {}, [&] { shown = m_program.files.nativePath(path); });
    return shown;
}

const Book &ProjectSession::book(const TocBook &entry)
{
    const QString key = identityOf(entry);
    if (const auto known = m_read.constFind(key); known != m_read.constEnd())
        return known->book;
    BookFile file(m_program.session, m_program.files);
    const Stamp stamp = stampOf(bookPath(entry));
    return m_read.insert(key, {file.read(m_project, entry), stamp})->book;
}

const QList<GlobalPage> &ProjectSession::globalPages()
{
    if (!m_globals) {
        m_globalsStamp =
            stampOf(folder() + ProjectFile::globalFolder + u'\\' + ProjectFile::globalBook);
        m_globals = readGlobalPages(m_program.session, m_program.files, m_project);
    }
    return *m_globals;
}

const QuickNav &ProjectSession::quickNav()
{
    if (!m_quickNav) {
        m_quickNavStamp = stampOf(folder() + ProjectFile::quickNav);
        m_quickNav = readQuickNav(m_program.session, m_program.files, m_project);
    }
    return *m_quickNav;
}

void ProjectSession::forgetBook(const TocBook &entry)
{
    m_read.remove(identityOf(entry));
    Q_EMIT bookChanged(entry);
}

void ProjectSession::bookWasRenamed(const TocBook &old, const TocBook &now)
{
    m_read.remove(identityOf(old));
    if (m_book && sameBook(*m_book, old))
        m_book = now;
    rereadBooks();
    Q_EMIT bookChanged(now);
}

void ProjectSession::forgetQuickNav()
{
    m_quickNav.reset();
    Q_EMIT quickNavChanged();
}

bool ProjectSession::changedOnDisk(const TocBook &entry) const
{
    const auto known = m_read.constFind(identityOf(entry));
    return known != m_read.constEnd() && stampOf(bookPath(entry)) != known->stamp;
}

bool ProjectSession::select(const std::optional<TocBook> &book, const QString &page)
{
    const std::optional<TocBook> chosen = book ? listed(*book) : std::nullopt;
    const QString chosenPage = chosen ? page : QString();
    if (chosen == m_book && chosenPage == m_page)
        return true;
    if (m_mayLeave && !m_mayLeave())
        return false;
    m_book = chosen;
    m_page = chosenPage;
    Q_EMIT selectionChanged();
    return true;
}

std::optional<TocBook> ProjectSession::listed(const TocBook &book) const
{
    for (const TocBook &entry : m_toc.books) {
        if (sameBook(entry, book))
            return entry;
    }
    return {};
}

ProjectSession::Stamp ProjectSession::stampOf(const QString &path) const
{
    const FileStatus status = m_program.files.status(path);
    return {status.kind, status.size, status.modified};
}

QString ProjectSession::bookPath(const TocBook &entry) const
{
    return BookFile(m_program.session, m_program.files).folder(m_project, entry) + entry.file;
}

void ProjectSession::forgetContents()
{
    m_read.clear();
    m_globals.reset();
    m_quickNav.reset();
}

// The current book as the file has it now; none when it has gone.
void ProjectSession::followSelection()
{
    if (!m_book)
        return;
    m_book = listed(*m_book);
    if (m_book)
        return;
    m_page.clear();
    Q_EMIT selectionChanged();
}
