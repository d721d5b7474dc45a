#include "controls/session/ProjectSession.h"

#include "controls/session/ChangeWatch.h"
#include "controls/session/ProjectPages.h"
#include "platform/Messages.h"
#include "platform/Paths.h"
#include "platform/QvError.h"
#include "platform/TreeWalker.h"
#include "projectfiles/OpenMark.h"
#include "projectfiles/changes/ChangePlan.h"
#include "projectfiles/changes/FinishChanges.h"
#include "startup/Session.h"
#include "tools/rename/ProjectRename.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

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
    trap([](const QvError &) {},
         [&] {
             removeLeftovers(files, folder, inUse);
             removeAbandoned(files, folder, inUse);
         });
    trap([](const QvError &) {}, [&] { removeDeadBins(files, folder); });
}

/// The entry that `book` has become: of one acronym, or still in its file. Nothing when it is gone.
std::optional<TocBook> successorOf(const TocBook &book, const QList<TocBook> &before,
                                   const QList<TocBook> &now)
{
    std::optional<TocBook> found;
    for (const TocBook &entry : now) {
        if (std::ranges::any_of(before, [&](const TocBook &old) { return sameBook(old, entry); }))
            continue;
        const bool isFile = entry.folder.compare(book.folder, Qt::CaseInsensitive) == 0
                            && entry.file.compare(book.file, Qt::CaseInsensitive) == 0;
        if (!isFile && entry.acronym.compare(book.acronym, Qt::CaseInsensitive) != 0)
            continue;
        if (found)
            return std::nullopt;
        found = entry;
    }
    return found;
}
} // namespace

ProjectSession::ProjectSession(Program &program, QObject *parent)
    : QObject(parent)
    , m_program(program)
    , m_bin(program.files)
    , m_watch(std::make_unique<ChangeWatch>(program.files))
    , m_pages(std::make_unique<ProjectPages>(*this))
{
    connect(m_watch.get(), &ChangeWatch::changed, this, &ProjectSession::othersChanged);
}

ProjectSession::~ProjectSession()
{
    m_pages.reset();
    emptyBin();
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
        if (!project.isEmpty()) {
            finishRenamesOf(m_program, project);
            readProject(project);
        }
    });
    Q_EMIT wasReset();
    for (const QString &what : std::exchange(m_finished, {}))
        m_program.messages.show({what});
}

void ProjectSession::close()
{
    m_history.clear();
    emptyBin();
    m_mark.reset();
    m_project.clear();
    m_toc = {};
    m_book.reset();
    m_page.clear();
    forgetContents();
    m_editorsOf.clear();
    m_watch->forgetAll();
}

void ProjectSession::emptyBin()
{
    if (!m_project.isEmpty())
        m_bin.empty(folder());
}

void ProjectSession::readProject(const QString &project)
{
    (void)existingProjectFolder(m_program.files, m_program.session.serverPath, project);
    m_project = project;
    m_mark = std::make_unique<OpenMark>(m_program.files, folder());
    finishWhatWasInterrupted();
    readToc();
    tidyUp(m_program.files, folder(), m_toc.books);
    watchLists();
}

void ProjectSession::watchLists()
{
    m_watch->watch(folder() + ProjectFile::categories);
    m_watch->watch(folder() + ProjectFile::keyWords);
    m_watch->watch(defaultCategoriesPath(m_program.session.serverPath));
    m_watch->lookNow();
}

// What cannot be finished does not keep the project from being opened.
void ProjectSession::finishWhatWasInterrupted()
{
    const auto say = [this](const QvError &error) { m_finished.append(error.description()); };
    const QString project = folder();
    trap(say, [&] {
        if (ChangePlan::inForce(m_program.files, project).isEmpty())
            return;
        runLong(tr("Finishing an interrupted change..."),
                [&](const Progress &) { m_finished = finishChanges(m_program.files, project); });
    });
}

void ProjectSession::readToc()
{
    // The stamp is taken first: a change while we read is then noticed rather than missed.
    const FileStamp stamp = stampOf(folder() + ProjectFile::toc);
    m_toc = TableOfContents(m_program.session, m_program.files).read(m_project);
    m_watch->watch(folder() + ProjectFile::toc, stamp);
}

void ProjectSession::reread()
{
    if (m_project.isEmpty())
        return;
    const QList<TocBook> before = m_toc.books;
    readToc();
    forgetContents();
    followSelection(before);
    Q_EMIT wasReset();
}

void ProjectSession::wasRenamed(const QString &now, const ChangeHistory::Rule &rule)
{
    m_project = now;
    m_history.rewrite(rule);
    m_editorsOf.clear();
    m_watch->forgetAll();
    watchLists();
    reread();
}

void ProjectSession::letGo()
{
    m_mark.reset();
    m_bin.letGo();
}

void ProjectSession::takeHold()
{
    m_mark = std::make_unique<OpenMark>(m_program.files, folder());
    trap([](const QvError &) {}, // it lies there all the same
         [this] { m_bin.takeHold(folder()); });
}

void ProjectSession::rereadBooks()
{
    const QList<TocBook> before = m_toc.books;
    readToc();
    followSelection(before);
    Q_EMIT booksChanged();
}

void ProjectSession::noticeChanges()
{
    m_watch->lookNow();
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
    const FileStamp stamp = stampOf(bookPath(entry));
    const Book &read = m_read.insert(key, {file.read(m_project, entry), stamp})->book;
    m_watch->watch(bookPath(entry), stamp);
    return read;
}

const QList<GlobalPage> &ProjectSession::globalPages()
{
    if (!m_globals) {
        const FileStamp stamp = stampOf(globalsPath());
        m_globals = readGlobalPages(m_program.session, m_program.files, m_project);
        m_watch->watch(globalsPath(), stamp);
    }
    return *m_globals;
}

const QuickNav &ProjectSession::quickNav()
{
    if (!m_quickNav) {
        const FileStamp stamp = stampOf(folder() + ProjectFile::quickNav);
        m_quickNav = readQuickNav(m_program.session, m_program.files, m_project);
        m_watch->watch(folder() + ProjectFile::quickNav, stamp);
    }
    return *m_quickNav;
}

void ProjectSession::forgetBook(const TocBook &entry)
{
    m_read.remove(identityOf(entry));
    Q_EMIT bookChanged(entry);
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
    if (!mayLeave())
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

FileStamp ProjectSession::stampOf(const QString &path) const
{
    return ::stampOf(m_program.files, path);
}

QString ProjectSession::bookPath(const TocBook &entry) const
{
    return BookFile(m_program.session, m_program.files).folder(m_project, entry) + entry.file;
}

QString ProjectSession::globalsPath() const
{
    return folder() + ProjectFile::globalFolder + u'\\' + ProjectFile::globalBook;
}

void ProjectSession::forgetContents()
{
    m_read.clear();
    m_globals.reset();
    m_quickNav.reset();
}

// The current book as the file has it now, under its new name if need be; none when it has gone.
void ProjectSession::followSelection(const QList<TocBook> &before)
{
    if (!m_book)
        return;
    const TocBook old = *m_book;
    m_book = listed(old);
    if (!m_book)
        m_book = successorOf(old, before, m_toc.books);
    if (m_book)
        return;
    m_page.clear();
    Q_EMIT selectionChanged();
}

// The current page may have left its book.
void ProjectSession::followPage()
{
    if (!m_book || m_page.isEmpty())
        return;
    bool isThere = true; // where the book cannot be read, its editor says so
    trap([](const QvError &) {},
         [&] {
             isThere =
                 std::ranges::any_of(flattened(book(*m_book).pages),
                                     [this](const BookPage &page) { return page.id == m_page; });
         });
    if (isThere)
        return;
    m_page.clear();
    Q_EMIT selectionChanged();
}

void ProjectSession::setLeaveGuard(QObject *owner, std::function<bool()> guard)
{
    if (!m_guards.contains(owner))
        connect(owner, &QObject::destroyed, this, [this, owner] { m_guards.remove(owner); });
    m_guards.insert(owner, std::move(guard));
}

bool ProjectSession::mayLeave()
{
    return std::all_of(m_guards.cbegin(), m_guards.cend(),
                       [](const auto &guard) { return guard(); });
}

void ProjectSession::setPageState(const QString &path, PageState state)
{
    if (state == pageState(path))
        return;
    if (state == PageState())
        m_pageStates.remove(path.toCaseFolded());
    else
        m_pageStates.insert(path.toCaseFolded(), state);
    Q_EMIT pageStateChanged(path);
}

PageState ProjectSession::pageState(const QString &path) const
{
    return m_pageStates.value(path.toCaseFolded());
}
