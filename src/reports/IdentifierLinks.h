#pragma once

#include "reports/IdentifierIndex.h"

#include <QList>
#include <QString>

/// What the links lead to: a page, all pages of a book, or a whole set.
struct LinkedPlace
{
    QString set;
    QString folder = {}; ///< of the book, relative to the set's folder, with backslash
    QString page = {};   ///< relative to the set's folder

    [[nodiscard]] bool isSet() const { return folder.isEmpty() && page.isEmpty(); }
    /// Whether a page of the set belongs to it; an anchor does not count.
    [[nodiscard]] bool holds(const QString &set, const QString &page) const;
};

/// A page that links to such a place, and that does not belong to it.
struct LinkingPage
{
    QString set, page;       ///< where the link stands
    QString leadsTo;         ///< page and anchor, relative to its set
    QString identifier = {}; ///< by which it is asked for; "" for a link within the set
    QString problem = {};    ///< what is wrong with it; "" when nothing is
};

/// Those of all sets that ask for it by an identifier, its own set among them.
QList<LinkingPage> identifierLinksTo(const IdentifierIndex &index, const LinkedPlace &place);
