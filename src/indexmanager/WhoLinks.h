#pragma once

#include "reports/IdentifierLinks.h"
#include "startup/Program.h"

#include <QList>
#include <QString>

struct WhoLinks
{
    QList<LinkingPage> links;
    bool pagesWereRead = false; ///< else the list of the linking tool was newer than the pages
    QStringList unread = {};    ///< pages that could not be read
};

/// All links to it: of pages of its set, but not for a set as a whole, and by identifier from all
/// sets. Raises when the set cannot be read; throws Unwinding when Stop was pressed.
WhoLinks whoLinksTo(Program &program, const IdentifierIndex &index, const LinkedPlace &place,
                    const Progress &progress);
