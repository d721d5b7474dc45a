#pragma once

#include "platform/FileSystem.h"
#include "startup/Session.h"

#include <QString>

// Where a project names its categories beside the category file: in the header and the books of
// the table of contents, and in books' own files that say it too. Names are compared without regard
// to case. All raise 53 or 75 naming the file that cannot be read or written.

/// Every place says `now` instead of `name`, each place once; "" takes the name away.
void replaceCategory(Session &session, FileSystem &files, const QString &project,
                     const QString &name, const QString &now);

/// Adds a name to the header's list, where the header has one.
void listCategory(Session &session, FileSystem &files, const QString &project, const QString &name);
