#pragma once

#include "components/GlobalInformation.h"
#include "platform/FileSystem.h"
#include "startup/Session.h"

#include <QList>

#include <memory>

/// A typed page of the global-information book.
struct GlobalPage
{
    QString id;
    QString type; ///< Welcome, Legal, Glossary, HowTo, Contact or Free
    QString title, file;
};

/// The pages that "_Global Information\Book_Global.xml" of a project lists. A missing file lists
/// none; one that cannot be read raises 75.
QList<GlobalPage> readGlobalPages(Session &session, FileSystem &files, const QString &project);

/// Makes the file or rewrites its list of pages, keeping what is not known here; a page without an
/// id gets a new one. The previous version goes to _Backup\.
void writeGlobalPages(Session &session, FileSystem &files, const QString &project,
                      const QList<GlobalPage> &pages);

/// The global-information component, which lives with its file.
std::unique_ptr<GlobalInformation> makeGlobalInformation(FileSystem &files);

/// `UpdatePSModuleFrame_Dynamic`: makes the current project's global book unless it is there.
void makeGlobalBookIfMissing(Session &session, FileSystem &files, GlobalInformation &component);
