#pragma once

#include "tools/migration/LegacyOutlines.h"

#include <pugixml.hpp>

/// What the table of links becomes.
struct LegacyLinkFile
{
    pugi::xml_document document;    ///< of QV_LinkID.xml; empty when there are no links
    QList<QStringList> pageLinkIds; ///< of pages, in the order of rows
};

/// `project` is the name of the project's folder.
LegacyLinkFile linkFileOf(const LegacyBookSet &set, const LegacyPlaces &places,
                          const QString &project, MigrationNotes &notes);
