#pragma once

#include "projectfiles/BookFile.h"
#include "tools/import/ImportPlan.h"

#include <QHash>
#include <QList>

/// Notes in the book where the pages that are taken came from, and which files the author left out.
/// `taken` says which items are in the book now; `pageSums` are the checksums of those pages that
/// are not the source's very bytes, by their place among the items.
void noteSources(Book &book, const ImportPlan &plan, const QList<bool> &taken,
                 const QHash<int, QByteArray> &pageSums);
