#pragma once

#include "projectfiles/QuickNavFile.h"
#include "tools/migration/LegacyOutlines.h"

/// The quick navigation of a book set: the first four levels are views, groups, topics and
/// categories; targets become links on categories.
QuickNav navigationOf(const LegacyBookSet &set, const LegacyPlaces &places,
                      const LegacyOutlines &outlines, MigrationNotes &notes);
