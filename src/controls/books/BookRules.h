#pragma once

#include "projectfiles/TableOfContents.h"

#include <QString>

// What a book may be called. Each question gives one sentence for the author, or "" when all is
// well. `others` are the books of the project without the one that is being changed.
namespace BookRules {

/// The first character that no text of our files can hold, such as "U+0001"; "" when there is none.
QString forbiddenIn(const QString &text);

/// Not empty, at most 200 characters, no control characters, not reserved, not taken without
/// regard to case.
QString nameProblem(const QString &name, const QList<TocBook> &others);

/// The same for an acronym, at most 40 characters that a file name can hold.
QString acronymProblem(const QString &acronym, const QList<TocBook> &others);

/// One folder name directly below the project that no other book and no part of the product uses.
QString folderProblem(const QString &folder, const QList<TocBook> &others);

/// A type is any short text, or none.
QString typeProblem(const QString &type);

/// Advice about a folder that is allowed all the same: copies lock files outside "Book_" folders.
QString folderAdvice(const QString &folder);

/// "Book_<acronym>" and "Book_<acronym>.xml".
QString folderFor(const QString &acronym);
QString fileFor(const QString &acronym);

} // namespace BookRules
