#pragma once

#include "projectfiles/TableOfContents.h"

#include <pugixml.hpp>

/// Fills the element Book of a table of contents; what is not known here stays.
void writeTocBook(pugi::xml_node element, const TocBook &book);
