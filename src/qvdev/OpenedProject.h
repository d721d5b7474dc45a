#pragma once

#include "controls/session/ProjectSession.h"
#include "qvdev/ConsoleWorld.h"

/// A project as the editors have it open, for one command.
class OpenedProject final
{
public:
    /// Makes the project the session's and reads it. Raises as `ProjectSession::open`.
    OpenedProject(ConsoleWorld &world, const CatalogueEntry &project);

    /// The book with this acronym, whatever its case. Raises 53 when there is none.
    [[nodiscard]] TocBook book(const QString &acronym) const;
    /// The page of a file below the book's folder, with `/` or `\`. Raises 53 when there is none.
    [[nodiscard]] BookPage page(const TocBook &book, const QString &file);

    /// Undoes the last command, even after Stop.
    void takeBack();

    ProjectSession session;
};
