#pragma once

#include "platform/Clock.h"
#include "platform/FileSystem.h"
#include "platform/Progress.h"
#include "platform/SystemLocale.h"
#include "tools/migration/LegacyBookSet.h"

/// What the new project shall be.
struct MigratedProject
{
    QString folder;     ///< where its files are written, with backslash; exists and is empty
    QString serverPath; ///< of the installation, ends in a backslash
    QString name, id, language;
};

/// Writes the files of a project from a legacy book set into an empty folder: table of contents,
/// books, pages, images, global pages, quick navigation, categories, search keywords, status
/// indicators, links, "Migration_Log.txt". Names that are unsafe or collide are made safe and links
/// follow them; every oddity is in the result, which has neither end nor folder. Files are not
/// flushed. Raises QvError and `Unwinding{Stopped}`; what was written stays then.
ConversionReport writeProject(FileSystem &files, Clock &clock, SystemLocale &locale,
                              const MigratedProject &project, const LegacyBookSet &set,
                              LegacyContents &contents, const Progress &progress);
