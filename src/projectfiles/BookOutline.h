#pragma once

#include "projectfiles/BookFile.h"

#include <pugixml.hpp>

/// A page outline is at most this many levels deep.
inline constexpr int deepestOutline = 32;

/// The pages below a Book_Pages element. Raises 75 naming `path` when they are nested too deep.
QList<BookPage> readOutline(const pugi::xml_node &bookPages, const QString &path);

/// Puts `pages` in place of the outline of `master` (Book_Master). Pages that were there, meant by
/// their ids, keep what is not known here; a page without an id gets a new one. Raises 5 when
/// `pages` are nested too deep.
void writeOutline(pugi::xml_node master, const QList<BookPage> &pages);
