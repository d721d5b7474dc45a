#pragma once

#include "components/XmlCharacters.h"
#include "viewer/BookSets.h"
#include "viewer/HelpPages.h"

/// What the parts of the viewer are handed.
struct ViewerWorld
{
    Session &session; ///< without a server path, there are no book sets
    FileSystem &files;
    const XmlCharacters &characters;
    HelpPages help;
    QList<BookSet> sets = {}; ///< as last read
};
