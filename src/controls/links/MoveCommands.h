#pragma once

#include "controls/session/ProjectSession.h"
#include "tools/MovedOutlines.h"
#include "tools/PageMove.h"

#include <QCoreApplication>

#include <optional>

/// A command that gives pages or a book folder another place, worked out and not yet done.
struct PlannedMove
{
    QString name;  ///< of the command, for Undo: "Rename page start.htm"
    QString title; ///< of the progress dialog
    QString said;  ///< what the status bar says afterwards
    PageMove move;
    std::optional<OutlineMove> outline = {}; ///< when pages change their place in an outline
};

/// Moves pages and book folders in the open project. All raise QvError naming the file, and have
/// then changed nothing.
class MoveCommands final
{
    Q_DECLARE_TR_FUNCTIONS(MoveCommands)

public:
    explicit MoveCommands(ProjectSession &session);

    /// Why the file of a page cannot be called that; "" when it can. Both are relative to the
    /// book's folder.
    [[nodiscard]] QString problemOfFile(const TocBook &book, const QString &file,
                                        const QString &newFile) const;
    /// The same for the folder of a book, relative to the project folder.
    [[nodiscard]] QString problemOfFolder(const TocBook &book, const QString &newFolder) const;

    /// These bring the index of pages up to date first, and raise 5 when the author asks for what
    /// cannot be. `book` may be the global pages, whose folder is "_Global Information".
    PlannedMove planFile(const TocBook &book, const QString &pageId, const QString &newFile);
    PlannedMove planFolder(const TocBook &book, const QString &newFolder);
    PlannedMove planToBook(const OutlineMove &move);

    /// Does it as one command that can be undone; `unlock` are locked pages that may be written.
    /// Without `withLinks` only the links in what moves are kept right. False when there was
    /// nothing to do.
    bool carryOut(const PlannedMove &planned, bool withLinks, const QStringList &unlock = {});

private:
    [[nodiscard]] QString pathIn(const TocBook &book, const QString &file) const;
    [[nodiscard]] QString fileOf(const TocBook &book, const QString &pageId);

    ProjectSession &m_session;
    FileSystem &m_files;
};
