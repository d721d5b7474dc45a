#include "controls/links/MovePages.h"

#include "controls/links/LinkChangesDialog.h"
#include "controls/links/MoveCommands.h"
#include "platform/Paths.h"

MovePages::MovePages(ProjectSession &session, QWidget *window)
    : m_session(session)
    , m_window(window)
{
}

QString MovePages::problemOfFile(const TocBook &book, const QString &file,
                                 const QString &newFile) const
{
    return MoveCommands(m_session).problemOfFile(book, file, newFile);
}

QString MovePages::problemOfFolder(const TocBook &book, const QString &newFolder) const
{
    return MoveCommands(m_session).problemOfFolder(book, newFolder);
}

bool MovePages::renameFile(const TocBook &book, const QString &pageId, const QString &newFile)
{
    return m_session.mayLeave()
           && askAndDo(MoveCommands(m_session).planFile(book, pageId, newFile), false);
}

bool MovePages::moveToBook(const TocBook &from, const QStringList &pageIds, const TocBook &target,
                           const QString &targetFolder, const Place &place)
{
    if (!m_session.mayLeave())
        return false;
    const OutlineMove move{.from = from,
                           .to = target,
                           .ids = pageIds,
                           .parent = place.parent,
                           .row = place.row,
                           .folder =
                               targetFolder.isEmpty() ? QString() : withBackslash(targetFolder)};
    return askAndDo(MoveCommands(m_session).planToBook(move), true);
}

bool MovePages::renameBookFolder(const TocBook &book, const QString &newFolder)
{
    return m_session.mayLeave()
           && askAndDo(MoveCommands(m_session).planFolder(book, newFolder), false);
}

bool MovePages::askAndDo(const PlannedMove &planned, bool moving)
{
    bool withLinks = true;
    if (!planned.move.changes.isEmpty()) {
        LinkChangesDialog dialog(planned.move, planned.name, moving, m_window);
        const int choice = dialog.exec();
        if (choice == LinkChangesDialog::Cancelled)
            return false;
        withLinks = choice == LinkChangesDialog::ChangeLinks;
    }
    return MoveCommands(m_session).carryOut(planned, withLinks, planned.move.lockedPages());
}
