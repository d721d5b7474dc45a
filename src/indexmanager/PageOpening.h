#pragma once

#include "startup/Program.h"

#include <QString>

/// Opens a page in the browser by its path below Docs, as link files store it; an anchor is left
/// out. Raises 53 when it is not there, 75 when the path leaves Docs.
void openStoredPage(Program &program, const QString &stored);
