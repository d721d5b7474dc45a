#pragma once

#include "controls/session/ProjectSession.h"

#include <QCoreApplication>

struct CatalogueEntry;

/// Name and ID of the open project, which other files than its own hold as well: neither change can
/// be undone by the history, which goes on working.
class ProjectNaming
{
    Q_DECLARE_TR_FUNCTIONS(ProjectNaming)

public:
    explicit ProjectNaming(ProjectSession &session);

    /// The project's entry in the list of projects; one without a name when it is not listed.
    [[nodiscard]] CatalogueEntry entry() const;
    /// What the language puts in front of the name that the author types; "" when nothing.
    [[nodiscard]] QString prefix() const;
    /// Why the project cannot be called `prefix()` + `typed`; "" when it can.
    [[nodiscard]] QString problemOfName(const QString &typed) const;
    [[nodiscard]] static QString problemOfId(const QString &id);

    /// Gives the project another name, under the progress dialog. False when the open page cannot
    /// be left. Raises as `ProjectRename::run`.
    bool rename(const QString &typed, bool alsoOthers);
    /// Raises 5 when the project is not listed any more.
    void setId(const QString &id);

private:
    ProjectSession &m_session;
    Program &m_program;
};
