#pragma once

#include "platform/Progress.h"
#include "projectfiles/changes/FileChanges.h"
#include "startup/Program.h"
#include "tools/rename/RenamedContent.h"

#include <QList>
#include <QString>
#include <QStringList>

/// What giving a project another name changes, so that the author sees it before. Paths are
/// relative to the project folder.
struct RenameSurvey
{
    struct Links
    {
        QString project; ///< "" for the installation's own file
        int count = 0;   ///< paths that lead into the renamed project
    };
    QStringList books;  ///< book files, the global book included
    QStringList pages;  ///< those that hold the project's marker
    QStringList packed; ///< packed copies under the old name
    bool hasLinks = false;
    QStringList locked;  ///< files that would be written and are read-only
    QList<Links> others; ///< link files of other projects
    QStringList remarks; ///< what cannot be read and stays as it is, and why

    /// The files whose bytes change, the table of contents among them.
    [[nodiscard]] QStringList files() const;
};

/// Looks at all files of the project in the folder `project` for `oldName`, and at the link files
/// of all others. Changes nothing. Raises as `TableOfContents::read`, 76 when the folder is not
/// there, Unwinding when stopped.
RenameSurvey surveyRename(Program &program, const QString &project, const QString &oldName,
                          const Progress &progress = {});

/// What `project` is read as: the language of its entry in the catalogue, else the session's.
QString languageOf(Program &program, const QString &project);

/// Where the link files of other projects are, and the installation's own under "". Full paths.
QList<std::pair<QString, QString>> otherLinkFiles(Program &program, const QString &project);
