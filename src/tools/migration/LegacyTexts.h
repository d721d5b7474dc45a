#pragma once

#include "tools/migration/LegacyBookSet.h"
#include "tools/migration/MigrationNotes.h"

/// The set with texts that the project's files can hold: a blank for each control character, the
/// replacement character for halves of characters and the like. What was changed is noted.
/// Names of files and targets stay as they are.
LegacyBookSet withCleanTexts(LegacyBookSet set, MigrationNotes &notes);

/// One such text.
QString cleanText(const QString &text);
