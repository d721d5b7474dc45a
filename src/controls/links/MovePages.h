#pragma once

#include "controls/session/ProjectSession.h"

#include <QStringList>

struct PlannedMove;
class QWidget;

/// Gives pages and book folders another place, and lets everything that refers to them follow:
/// links in all pages and style sheets, outlines, quick navigation, keywords and link identifiers.
/// The author sees first which links change; all of it is one command that can be undone.
/// All operations return false when the author cancelled or there was nothing to do, raise QvError
/// naming the file, and have then changed nothing.
class MovePages final
{
public:
    MovePages(ProjectSession &session, QWidget *window);

    /// Why the file of a page cannot be called that; "" when it can. `newFile` is relative to the
    /// book's folder. For fields, while the author types.
    [[nodiscard]] QString problemOfFile(const TocBook &book, const QString &file,
                                        const QString &newFile) const;
    /// The same for the folder of a book, relative to the project folder.
    [[nodiscard]] QString problemOfFolder(const TocBook &book, const QString &newFolder) const;

    /// `pageId` is one of the book's outline, or of the global pages when the book's folder is
    /// "_Global Information". Raises 5 when the name is no good.
    bool renameFile(const TocBook &book, const QString &pageId, const QString &newFile);
    /// Where pages go in an outline: below `parent` (an id; "" is the top), before its `row`-th
    /// child; -1 is behind all.
    struct Place
    {
        QString parent = {};
        int row = -1;
    };
    /// Moves pages of `from`, each with all below it in the outline, into the outline and the
    /// folder of `target`: `targetFolder` is relative to that folder, "" the folder itself. A file
    /// whose name is taken there gets a new one; ids are new when the book is another.
    bool moveToBook(const TocBook &from, const QStringList &pageIds, const TocBook &target,
                    const QString &targetFolder, const Place &place);
    /// Raises 5 when the folder's name is no good.
    bool renameBookFolder(const TocBook &book, const QString &newFolder);

private:
    bool askAndDo(const PlannedMove &planned, bool moving);

    ProjectSession &m_session;
    QWidget *m_window;
};
