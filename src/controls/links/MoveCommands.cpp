#include "controls/links/MoveCommands.h"

#include "controls/books/BookRules.h"
#include "controls/session/LockedFiles.h"
#include "controls/session/ProjectPages.h"
#include "platform/Paths.h"
#include "platform/QvError.h"
#include "projectfiles/GlobalBook.h"
#include "startup/Session.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QString plain(const QString &path)
{
    return withoutBackslash(QString(path).replace(u'/', u'\\'));
}

bool isSafePath(const QString &path)
{
    const QStringList pieces = path.split(u'\\');
    return std::all_of(pieces.cbegin(), pieces.cend(), isSafeName);
}

/// Selects what was selected before the move, where it is now. `ids` are those that pages got.
void showAgain(ProjectSession &session, const PlannedMove &planned, const TocBook &book,
               const QString &page, const QHash<QString, QString> &ids)
{
    if (planned.outline && identityOf(book) == identityOf(planned.outline->from)
        && ids.contains(page)) {
        session.select(planned.outline->to, ids.value(page));
        return;
    }
    TocBook now = book; // its folder may have another name
    now.folder = MovedPaths(planned.move.moves).newPath(plain(now.folder));
    session.select(now.folder == plain(book.folder) ? book : now, page);
}

} // namespace

MoveCommands::MoveCommands(ProjectSession &session)
    : m_session(session)
    , m_files(session.program().files)
{
}

QString MoveCommands::pathIn(const TocBook &book, const QString &file) const
{
    return plain(book.folder) + u'\\' + plain(file);
}

QString MoveCommands::problemOfFile(const TocBook &book, const QString &file,
                                    const QString &newFile) const
{
    const QString name = plain(newFile);
    if (newFile.trimmed().isEmpty())
        return tr("The file needs a name.");
    if (!isSafePath(name) || name.contains(u'#') || name.contains(u'%'))
        return tr("\"%1\" cannot be the name of a file.").arg(newFile);
    if (!isPageName(name))
        return tr("The name of a page ends in .htm or .html.");
    const bool same = name.compare(plain(file), Qt::CaseInsensitive) == 0;
    const QString path = m_session.folder() + pathIn(book, newFile);
    if (!same && m_files.exists(path))
        return tr("There is a file of that name already.");
    for (QString up = parentFolder(path); up.size() > m_session.folder().size();
         up = parentFolder(withoutBackslash(up))) {
        const FileKind kind = m_files.status(withoutBackslash(up)).kind;
        if (kind != FileKind::Folder && kind != FileKind::Missing)
            return tr("%1 is no folder.").arg(m_session.shownPath(withoutBackslash(up)));
    }
    return {};
}

QString MoveCommands::problemOfFolder(const TocBook &book, const QString &newFolder) const
{
    const QString name = plain(newFolder);
    if (newFolder.trimmed().isEmpty())
        return tr("The folder needs a name.");
    if (!isSafePath(name))
        return tr("\"%1\" cannot be the name of a folder.").arg(newFolder);
    const QString old = plain(book.folder);
    if (name.compare(old, Qt::CaseInsensitive) == 0)
        return {};
    if (carriedOver(name, old, old) || carriedOver(old, name, name))
        return tr("A folder cannot be moved into itself or out of a folder of its own.");
    if (m_files.exists(m_session.folder() + name))
        return tr("There is a folder of that name already.");
    QList<TocBook> others = m_session.books();
    others.removeOne(book);
    const QStringList pieces = name.split(u'\\');
    for (const QString &piece : pieces) { // a book may lie deeper in the project
        const QString problem =
            BookRules::folderProblem(piece, pieces.size() == 1 ? others : QList<TocBook>());
        if (!problem.isEmpty())
            return problem;
    }
    return {};
}

QString MoveCommands::fileOf(const TocBook &book, const QString &pageId)
{
    QString file;
    if (plain(book.folder).compare(ProjectFile::globalFolder, Qt::CaseInsensitive) == 0) {
        for (const GlobalPage &page : m_session.globalPages())
            file = page.id == pageId ? page.file : file;
    } else {
        for (const BookPage &page : flattened(m_session.book(book).pages))
            file = page.id == pageId ? page.file : file;
    }
    if (file.isEmpty())
        throw QvError(InvalidCall, {}, tr("The page is no longer in the book."));
    return file;
}

PlannedMove MoveCommands::planFile(const TocBook &book, const QString &pageId,
                                   const QString &newFile)
{
    const QString file = fileOf(book, pageId);
    if (const QString problem = problemOfFile(book, file, newFile); !problem.isEmpty())
        throw QvError(InvalidCall, {}, problem);
    const QString from = pathIn(book, file);
    const QString to = pathIn(book, newFile);
    if (!m_files.fileExists(m_session.folder() + from))
        throw QvError(FileNotFound, {},
                      tr("The file is not there: %1").arg(m_session.folder() + from));
    PlannedMove planned{.name = tr("Rename page %1").arg(lastComponent(from)),
                        .title = tr("Renaming the page..."),
                        .said = tr("The page %1 is now called %2.").arg(file, newFile),
                        .move = {}};
    if (from != to)
        planned.move = planPageMove(m_session.pages().current(), {{from, to}});
    return planned;
}

PlannedMove MoveCommands::planFolder(const TocBook &book, const QString &newFolder)
{
    if (const QString problem = problemOfFolder(book, newFolder); !problem.isEmpty())
        throw QvError(InvalidCall, {}, problem);
    const QString from = plain(book.folder);
    const QString to = plain(newFolder);
    if (!m_files.folderExists(m_session.folder() + from))
        throw QvError(PathNotFound, {},
                      tr("The folder is not there: %1").arg(m_session.folder() + from));
    PlannedMove planned{.name = tr("Rename folder of book %1").arg(book.name),
                        .title = tr("Renaming the folder..."),
                        .said = tr("The folder of the book %1 is now %2.").arg(book.name, to),
                        .move = {}};
    if (from != to)
        planned.move = planPageMove(m_session.pages().current(), {{from, to, true}});
    return planned;
}

PlannedMove MoveCommands::planToBook(const OutlineMove &move)
{
    if (!move.folder.isEmpty() && !isSafePath(withoutBackslash(move.folder)))
        throw QvError(InvalidCall, {},
                      tr("\"%1\" cannot be the name of a folder.").arg(move.folder));
    const QList<PathMove> moves =
        fileMoves(m_session.program().session, m_files, m_session.projectName(), move);
    const QString target = move.to.name;
    const int count = static_cast<int>(move.ids.size());
    return {.name = count == 1 ? tr("Move page to %1").arg(target)
                               : tr("Move %1 pages to %2").arg(count).arg(target),
            .title = tr("Moving the pages..."),
            .said = tr("Moved to the book %1.").arg(target),
            .move = moves.isEmpty() ? PageMove() : planPageMove(m_session.pages().current(), moves),
            .outline = move};
}

bool MoveCommands::carryOut(const PlannedMove &planned, bool withLinks, const QStringList &unlock)
{
    Session &values = m_session.program().session;
    const QString folder = m_session.folder();
    const QString project = m_session.projectName();
    const QString language = values.projectLanguage;
    const auto selected = m_session.currentBook();
    const QString page = m_session.currentPage();
    QHash<QString, QString> ids; // of pages that went to another place of an outline
    UnlockedFiles unlocked(m_session);
    unlocked.unlock(withLinks ? unlock : QStringList());
    const PageMove move = withLinks ? planned.move : planned.move.withOwnLinksOnly();
    const auto work = [&](StagedFiles &files, const Progress &progress) {
        rewriteLinks(files, folder, move, language, progress);
        if (planned.outline)
            ids = moveInOutlines(values, files, project, *planned.outline, move.moves);
        followInProject(values, files, project, move.moves);
        moveFiles(files, folder, move.moves);
    };
    if (!m_session.performLong(planned.name, planned.title, work))
        return false;
    unlocked.keep();
    if (selected)
        showAgain(m_session, planned, *selected, page, ids);
    const int links = move.changeCount();
    Q_EMIT m_session.done(planned.said
                          + (links > 0 ? u' ' + tr("Links changed: %1.").arg(links) : QString()));
    return true;
}
