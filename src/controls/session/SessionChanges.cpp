#include "controls/session/ChangeWatch.h"
#include "controls/session/LockedFiles.h"
#include "controls/session/ProjectSession.h"
#include "platform/Messages.h"
#include "platform/Paths.h"
#include "platform/QvError.h"
#include "startup/Session.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

bool isBackup(const QString &path)
{
    return carriedOver(path, ProjectFile::backupFolder, {}).has_value();
}

/// The paths that a change touches in what authors see.
QStringList authorPaths(const FileChanges &changes)
{
    QStringList paths = changes.paths();
    paths.removeIf(isBackup);
    return paths;
}

ProjectAreas areasOf(const QStringList &paths)
{
    ProjectAreas areas;
    for (const QString &path : paths) {
        if (path.startsWith(ProjectFile::quickNav.first(9), Qt::CaseInsensitive))
            areas |= ProjectArea::QuickNav;
        else if (path.startsWith(ProjectFile::globalFolder, Qt::CaseInsensitive)
                 || path.compare(ProjectFile::categories, Qt::CaseInsensitive) == 0)
            areas |= ProjectArea::Globals;
        else
            areas |= ProjectArea::Books;
    }
    return areas;
}

/// Raises Unwinding when the author does not want them unlocked.
void unlockAsked(const ProjectSession &session, const QStringList &locked, UnlockedFiles &unlocked)
{
    if (!mayUnlock(session, locked))
        throw Unwinding{Unwinding::Reason::Stopped};
    unlocked.unlock(locked);
}

QString bookFileOf(const TocBook &entry)
{
    return QString(entry.folder + u'\\' + entry.file).replace(u'/', u'\\');
}

} // namespace

bool ProjectSession::perform(const QString &name, const std::function<void(StagedFiles &)> &command)
{
    requireOpen();
    const ChangeWatch::Pause pause(*m_watch);
    StagedFiles staged(m_program.files, folder());
    staged.allowLocked();
    command(staged);
    const FileChanges changes = staged.changes();
    UnlockedFiles unlocked(*this);
    unlockAsked(*this, lockedBy(*this, changes), unlocked);
    const bool done = performChanges(name, changes);
    unlocked.keep();
    return done;
}

bool ProjectSession::performLong(
    const QString &name, const QString &title,
    const std::function<void(StagedFiles &, const Progress &)> &command)
{
    return performPrepared(name, title, [&](const Progress &progress) {
        StagedFiles staged(m_program.files, folder());
        staged.allowLocked();
        command(staged, progress);
        return staged.changes();
    });
}

// The author is asked here, in the window's own thread, and only when there is something to unlock.
bool ProjectSession::performPrepared(const QString &name, const QString &title,
                                     const std::function<FileChanges(const Progress &)> &prepare)
{
    requireOpen();
    const ChangeWatch::Pause pause(*m_watch);
    const QString project = folder();
    FileChanges changes;
    QStringList locked;
    const auto apply = [&](const Progress &progress) {
        applyChanges(m_program.files, project, changes, progress);
    };
    runLong(title, [&](const Progress &progress) {
        changes = prepare(progress.piece(0, 2));
        changes.name = name;
        locked = lockedBy(*this, changes);
        if (locked.isEmpty())
            apply(progress.piece(1, 2));
    });
    if (changes.isEmpty())
        return false;
    if (!locked.isEmpty()) {
        UnlockedFiles unlocked(*this);
        unlockAsked(*this, locked, unlocked);
        runLong(title, apply);
        unlocked.keep();
    }
    m_history.add(name, changes);
    absorb(changes);
    return true;
}

bool ProjectSession::performChanges(const QString &name, FileChanges changes,
                                    const Progress &progress)
{
    requireOpen();
    if (changes.isEmpty())
        return false;
    const ChangeWatch::Pause pause(*m_watch);
    changes.name = name;
    applyChanges(m_program.files, folder(), changes, progress);
    m_history.add(name, changes);
    absorb(changes);
    return true;
}

void ProjectSession::requireOpen() const
{
    if (m_project.isEmpty())
        throw QvError(InvalidCall, {}, tr("No project is open."));
}

void ProjectSession::undo()
{
    if (m_history.canUndo() && mayLeave())
        move(true);
}

void ProjectSession::redo()
{
    if (m_history.canRedo() && mayLeave())
        move(false);
}

void ProjectSession::move(bool back)
{
    const ChangeWatch::Pause pause(*m_watch);
    const QString name = back ? m_history.undoName() : m_history.redoName();
    const QString project = folder();
    FileChanges changes = back ? m_history.undoing() : m_history.redoing();
    std::optional<QString> foreign;
    runLong(back ? tr("Undoing...") : tr("Doing it again..."), [&](const Progress &progress) {
        foreign = changedSince(m_program.files, project, changes);
        if (!foreign)
            applyChanges(m_program.files, project, changes, progress);
    });
    if (foreign)
        refuse(back, name, *foreign);
    if (back)
        m_history.undone(changes);
    else
        m_history.redone(changes);
    absorb(changes);
    Q_EMIT historyMoved(areasOf(authorPaths(changes)));
    Q_EMIT done((back ? tr("Undone: %1") : tr("Done again: %1")).arg(name));
}

// The files have gone on without the history: what lies behind can no longer be reached.
void ProjectSession::refuse(bool back, const QString &name, const QString &path)
{
    const QString text =
        back ? tr("\"%1\" cannot be undone any more, because this file was changed since:\n%2\n\n"
                  "Nothing was changed now, and what was done before stays as it is. To go back all "
                  "the same, give the opposite command: rename or move it back, for instance.")
             : tr("\"%1\" cannot be done again any more, because this file was changed since:\n%2"
                  "\n\nNothing was changed now. Give the command itself once more.");
    if (back)
        m_history.forgetUndo();
    else
        m_history.forgetRedo();
    throw QvError(PathFileAccess, {}, text.arg(name, shownPath(folder() + path)));
}

void ProjectSession::runLong(const QString &title,
                             const std::function<void(const Progress &)> &work)
{
    const ChangeWatch::Pause pause(*m_watch);
    if (m_runner)
        m_runner(title, work);
    else
        work({});
}

QString ProjectSession::binPlace(const QString &name)
{
    requireOpen();
    return m_bin.place(folder(), name);
}

void ProjectSession::watch(const QString &path, const std::optional<FileStamp> &stamp)
{
    if (!m_watch->watched().contains(path, Qt::CaseInsensitive))
        m_editorsOf[path.toCaseFolded()] = 0;
    ++m_editorsOf[path.toCaseFolded()];
    m_watch->watch(path, stamp);
}

void ProjectSession::unwatch(const QString &path)
{
    const auto editors = m_editorsOf.find(path.toCaseFolded());
    if (editors == m_editorsOf.end() || --*editors > 0)
        return;
    m_editorsOf.erase(editors);
    m_watch->forget(path);
}

void ProjectSession::absorb(const FileChanges &changes)
{
    watchAnew(changes);
    rereadWhat(authorPaths(changes));
}

// What we wrote ourselves is no news.
void ProjectSession::watchAnew(const FileChanges &changes)
{
    const QString base = folder();
    const QStringList changed = authorPaths(changes);
    for (const QString &path : m_watch->watched()) {
        const auto isIn = [&](const QString &place) {
            return carriedOver(path, base + place, {}).has_value();
        };
        if (std::ranges::any_of(changed, isIn))
            m_watch->watch(path);
    }
    for (const ExpectedFile &file : changes.expected) {
        if (m_editorsOf.contains((base + file.path).toCaseFolded()))
            m_watch->watch(base + file.path, file.stamp);
    }
}

// Exactly the files that were changed are read again. Paths are relative to the project folder.
void ProjectSession::rereadWhat(const QStringList &paths)
{
    const auto isChanged = [&](const QString &path) {
        return std::ranges::any_of(paths, [&](const QString &changed) {
            return carriedOver(path, changed, {}).has_value();
        });
    };
    rereadBooksWhat(isChanged);
    if (isChanged(ProjectFile::globalFolder + u"\\"_s + ProjectFile::globalBook)) {
        m_globals.reset();
        Q_EMIT globalPagesChanged();
    }
    if (isChanged(ProjectFile::quickNav))
        forgetQuickNav();
    if (isChanged(ProjectFile::categories))
        Q_EMIT categoriesChanged();
    if (isChanged(ProjectFile::keyWords))
        Q_EMIT keyWordsChanged();
    Q_EMIT filesChanged(paths);
}

void ProjectSession::rereadBooksWhat(const std::function<bool(const QString &)> &isChanged)
{
    const QList<TocBook> before = m_toc.books;
    if (isChanged(ProjectFile::toc))
        rereadBooks();
    QList<TocBook> entries = m_toc.books;
    for (const TocBook &old : before) {
        if (!entries.contains(old))
            entries.append(old);
    }
    for (const TocBook &entry : std::as_const(entries)) {
        if (isChanged(bookFileOf(entry)) && m_read.contains(identityOf(entry)))
            forgetBook(entry);
    }
    followPage();
}

void ProjectSession::othersChanged(const QStringList &paths)
{
    const QString defaults = defaultCategoriesPath(m_program.session.serverPath);
    QStringList relative;
    for (const QString &path : paths) {
        if (path.startsWith(folder(), Qt::CaseInsensitive))
            relative.append(path.sliced(folder().size()));
    }
    // Saying it makes the window active again, which looks again: each problem is said once.
    const auto sayOnce = [this](const QvError &error) {
        if (std::exchange(m_noticedProblem, error.description()) != error.description())
            m_program.messages.show({error.description()});
    };
    trap(sayOnce, [&] {
        if (paths.contains(defaults, Qt::CaseInsensitive))
            Q_EMIT categoriesChanged();
        rereadWhat(relative);
        m_noticedProblem.clear();
    });
}
