#pragma once

#include "dbtoxml/LegacyTableReader.h"
#include "platform/Progress.h"
#include "tools/migration/LegacyBookSet.h"

/// Reads all tables of a legacy book set but what pages and images hold. `problems` of the result
/// is empty: what is wrong goes to `findings`. Raises EarlyEnd when `file` is no book set or a
/// table cannot be read at all, and `Unwinding{Stopped}`.
LegacyBookSet readBookSet(const DatabaseFile &file, LegacyFindings &findings,
                          const Progress &progress);
