#pragma once

#include "tools/build/BuildInput.h"
#include "tools/build/ScannedPages.h"

#include <QList>
#include <QString>

/// A link identifier as it is shown and compared: trimmed, with blanks for tabs, line breaks and
/// what no XML file can hold.
QString linkIdentifier(const QString &text);
QString linkIdentifier(std::string_view utf8);

/// A place that the project publishes under an identifier.
struct PublishedTarget
{
    QString identifier;
    QString file;        ///< relative to the project folder, with backslashes
    QString anchor = {}; ///< "" for the page as a whole
    int line = 0;        ///< 0: the outline of the book says it
    bool isThere = true; ///< the page is

    [[nodiscard]] QString place() const { return anchor.isEmpty() ? file : file + u'#' + anchor; }
};

/// What pages (<a data-qv-ibd="ID">) and outlines (Page_LinkID) publish: pages first, in their
/// order, then outlines in the order of books.
QList<PublishedTarget> publishedTargets(const BuildInput &input, const ScannedPages &pages);

/// A page's references to one identifier (<a href="qvlink:ID">).
struct AskedIdentifier
{
    QString identifier;
    QString file; ///< the page, relative to the project folder, with backslashes
};

/// In the order of the pages; a page that asks several times stands there as often.
QList<AskedIdentifier> askedIdentifiers(const ScannedPages &pages);
