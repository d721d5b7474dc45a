#pragma once

#include <QString>

#include <functional>

// File names of pages, made from their titles. The same title gives the same name at every time.

/// A name for the page of a title or file: ASCII where the letters have a form in it, no blanks,
/// nothing that a link would have to escape but letters of other scripts. "Name.htm".
QString pageFileName(const QString &title);

/// A title in small ASCII letters, digits and hyphens only: "ueber-uns"; "page" when it has none.
QString plainName(const QString &title);

/// A file name for a new page, its plain name with ".htm"; the first that `isTaken` says false to.
QString newPageFile(const QString &title, const std::function<bool(const QString &)> &isTaken);
