#pragma once

#include "tools/migration/FreePlaces.h"
#include "tools/migration/LegacyPlaces.h"

/// The books of the project in their order, with names, acronyms and folders that are free. The
/// last one takes the pages and images whose book is missing, when there are any.
QList<PlacedBook> placeBooks(const LegacyBookSet &set, FreePlaces &free, MigrationNotes &notes);
