#pragma once

#include "projectfiles/CategoryFile.h"
#include "tools/migration/LegacyPlaces.h"

/// The categories of a book set; in each list every name only once, without regard to case.
struct LegacyCategories
{
    QStringList all;          ///< in the order of books, then of global pages
    QList<QStringList> books; ///< of the books of the project
};

LegacyCategories categoriesOf(const LegacyBookSet &set, const LegacyPlaces &places,
                              MigrationNotes &notes);
