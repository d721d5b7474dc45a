#include "controls/books/PageActions.h"

#include "controls/books/BookChoiceDialog.h"
#include "controls/books/DeletePagesDialog.h"
#include "controls/books/NewPageDialog.h"
#include "controls/books/PageCommands.h"
#include "controls/books/PagePlaces.h"
#include "controls/links/MovePages.h"
#include "controls/parts/Handler.h"
#include "controls/parts/NameDialog.h"
#include "platform/FileSystem.h"

#include <QWidget>

#include <algorithm>

namespace {
/// The page that is current once others are gone: the one before them, or the one behind.
QString neighbourOf(const QList<BookPage> &outline, const QSet<QString> &gone)
{
    QList<BookPage> left = outline;
    OutlineEdit::take(left, gone);
    const QList<BookPage> all = flattened(outline);
    const QList<BookPage> kept = flattened(left);
    if (kept.isEmpty())
        return {};
    for (qsizetype i = 0; i < kept.size(); ++i) {
        if (all.at(i).id != kept.at(i).id)
            return kept.at(std::max<qsizetype>(i - 1, 0)).id;
    }
    return kept.last().id;
}
} // namespace

PageActions::PageActions(ProjectSession &session, QWidget *window)
    : QObject(window)
    , m_session(session)
    , m_window(window)
{
}

bool PageActions::run(const QString &whatWasDone, const Command &command)
{
    const bool isDone = handled(m_session.program(), [&] {
        PageCommands commands(m_session);
        return command(commands);
    });
    if (!isDone)
        return false;
    if (!whatWasDone.isEmpty())
        Q_EMIT m_session.done(whatWasDone);
    Q_EMIT changed();
    return true;
}

void PageActions::askNew(const TocBook &book, const OutlinePlace &place)
{
    auto *dialog = new NewPageDialog(m_session, book, place, m_window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this, [this, dialog, book] {
        m_session.select(book, dialog->pageId());
        Q_EMIT m_session.done(tr("The page %1 was added.").arg(dialog->title()));
        Q_EMIT changed();
    });
    dialog->open();
}

void PageActions::askDelete(const TocBook &book, const QStringList &pages)
{
    if (pages.isEmpty() || !m_session.mayLeave())
        return;
    handled(m_session.program(), [&] {
        auto *dialog = new DeletePagesDialog(m_session, book, pages, m_window);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        connect(dialog, &QDialog::accepted, this, [this, dialog, book, pages] {
            const bool alsoFiles = dialog->alsoFiles();
            const QString what = PageCommands(m_session).named(book, pages);
            if (leave(book, pages))
                run((alsoFiles ? tr("Deleted: %1") : tr("Taken out of the book: %1")).arg(what),
                    [&](PageCommands &commands) {
                        return commands.remove(book, pages, alsoFiles);
                    });
        });
        dialog->open();
    });
}

// An open page that goes is left first, so that nothing is written to a file that went.
bool PageActions::leave(const TocBook &book, const QStringList &pages)
{
    const auto &current = m_session.currentBook();
    if (!current || identityOf(*current) != identityOf(book))
        return true;
    QList<BookPage> outline = m_session.book(book).pages;
    const QSet<QString> gone(pages.cbegin(), pages.cend());
    const QList<BookPage> taken = flattened(OutlineEdit::take(outline, gone));
    const bool isOpen = std::any_of(taken.cbegin(), taken.cend(), [&](const BookPage &page) {
        return page.id == m_session.currentPage();
    });
    return !isOpen || m_session.select(book, neighbourOf(m_session.book(book).pages, gone));
}

void PageActions::askRenameFile(const TocBook &book, const QString &page)
{
    const auto shown = pageOfBook(m_session, book, page);
    if (!shown || !m_session.mayLeave())
        return;
    const auto problem = [this, book, file = shown->file](const QString &text) {
        return MovePages(m_session, m_window).problemOfFile(book, file, text);
    };
    const auto rename = [this, book, page](const QString &file) {
        return run({}, [&](PageCommands &) {
            return MovePages(m_session, m_window).renameFile(book, page, file);
        });
    };
    auto *dialog =
        new NameDialog({tr("Rename file"), tr("&File of the page:"), tr("&Rename"), shown->file},
                       problem, rename, m_window);
    dialog->open();
}

void PageActions::askMove(const TocBook &book, const QStringList &pages)
{
    if (pages.isEmpty())
        return;
    auto *dialog = new BookChoiceDialog(m_session, book, m_window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this, [this, dialog, book, pages] {
        if (const auto target = dialog->book())
            move(book, pages, *target, {});
    });
    dialog->open();
}

void PageActions::rename(const TocBook &book, const QString &page, const QString &title)
{
    run(tr("The page is called %1 now.").arg(title),
        [&](PageCommands &commands) { return commands.rename(book, page, title); });
}

void PageActions::duplicate(const TocBook &book, const QString &page)
{
    if (!m_session.mayLeave())
        return;
    QString made;
    run(tr("The page was duplicated."), [&](PageCommands &commands) {
        made = commands.duplicate(book, page);
        return !made.isEmpty();
    });
    if (!made.isEmpty())
        m_session.select(book, made);
}

void PageActions::moveUp(const TocBook &book, const QStringList &pages)
{
    run({}, [&](PageCommands &commands) { return commands.moveUp(book, pages); });
}

void PageActions::moveDown(const TocBook &book, const QStringList &pages)
{
    run({}, [&](PageCommands &commands) { return commands.moveDown(book, pages); });
}

void PageActions::promote(const TocBook &book, const QStringList &pages)
{
    run({}, [&](PageCommands &commands) { return commands.promote(book, pages); });
}

void PageActions::demote(const TocBook &book, const QStringList &pages)
{
    run({}, [&](PageCommands &commands) { return commands.demote(book, pages); });
}

void PageActions::sort(const TocBook &book, const QString &parent)
{
    run(tr("The pages were sorted by title."),
        [&](PageCommands &commands) { return commands.sort(book, parent); });
}

void PageActions::move(const TocBook &book, const QStringList &pages, const TocBook &target,
                       const OutlinePlace &place)
{
    if (identityOf(book) == identityOf(target)) {
        run({}, [&](PageCommands &commands) { return commands.move(book, pages, place); });
        return;
    }
    run({}, [&](PageCommands &) {
        if (!m_session.mayLeave())
            return false;
        const auto [parent, row] = OutlineEdit::rowOf(m_session.book(target).pages, place);
        return MovePages(m_session, m_window).moveToBook(book, pages, target, {}, {parent, row});
    });
}

void PageActions::setLocked(const TocBook &book, const QStringList &pages, bool locked)
{
    FileSystem &files = m_session.program().files;
    QStringList changedFiles;
    handled(m_session.program(), [&] {
        for (const QString &id : pages) {
            const auto page = pageOfBook(m_session, book, id);
            const QString path = page ? pathOfPage(m_session, book, *page) : QString();
            const QString full = m_session.folder() + path;
            if (path.isEmpty() || files.status(full).readOnly == locked || !files.fileExists(full))
                continue;
            files.setAttributes(full, files.attributes(full) ^ ReadOnlyFile);
            changedFiles.append(path);
        }
    });
    if (changedFiles.isEmpty())
        return;
    Q_EMIT m_session.filesChanged(changedFiles);
    const QString what =
        changedFiles.size() == 1 ? changedFiles.first() : tr("%1 pages").arg(changedFiles.size());
    Q_EMIT m_session.done((locked ? tr("Locked: %1") : tr("Unlocked: %1")).arg(what));
}
