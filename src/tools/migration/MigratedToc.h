#pragma once

#include "platform/Clock.h"
#include "platform/SystemLocale.h"
#include "projectfiles/TableOfContents.h"
#include "tools/migration/ProjectWriter.h"

#include <pugixml.hpp>

/// The header of a migrated project's table of contents, without categories, and what was odd.
struct MigratedHeader
{
    TocHeader header;
    bool isThere = true; ///< the database says anything of the project
    QStringList problems = {};
};
MigratedHeader migratedHeader(const LegacyProject &legacy, const MigratedProject &project,
                              Clock &clock, SystemLocale &locale);

/// A whole new table of contents.
pugi::xml_document tocDocument(const Toc &toc);
