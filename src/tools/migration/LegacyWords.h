#pragma once

#include "projectfiles/KeyWordFile.h"
#include "tools/migration/LegacyOutlines.h"

/// The search keywords of a book set: each word once, with all its pages.
QList<KeyWord> keyWordsOf(const LegacyBookSet &set, const LegacyPlaces &places,
                          const LegacyOutlines &outlines, MigrationNotes &notes);
