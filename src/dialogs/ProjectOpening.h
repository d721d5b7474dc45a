#pragma once

#include "catalogue/ProjectCatalogue.h"
#include "startup/Program.h"

/// The catalogue's entry of a project that may be continued. Raises 5 when it was deleted or
/// released meanwhile.
CatalogueEntry projectToContinue(Program &program, const QString &name);

/// Makes a project the current one and hands it to the controls. Raises 53, 75 or 76 naming what
/// cannot be read; the former project is then still current.
void continueProject(Program &program, const CatalogueEntry &project);
