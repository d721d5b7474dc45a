#pragma once

#include "controls/session/ProjectSession.h"
#include "projectfiles/CategoryFile.h"

/// Categories of the project's own file, and those of the installation's default file. A file that
/// is missing lists none; one that cannot be read raises 75.
QList<Category> ownCategories(ProjectSession &session);
QList<Category> defaultCategories(ProjectSession &session);

/// All names a book of the project may carry: own, listed in the table of contents, default; each
/// once without regard to case.
QStringList availableCategories(ProjectSession &session);
