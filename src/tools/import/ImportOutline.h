#pragma once

#include "projectfiles/BookFile.h"
#include "tools/import/ImportPlan.h"

#include <QList>

/// Lists the pages of an import in a book, after what it lists already. Pages stand in their
/// order; those of a sub-folder become a level of their own when the folder has an index page to
/// hang them on. Pages that the book lists already stay where they are.
void addToOutline(Book &book, const QList<const ImportItem *> &pages);
