#pragma once

#include <QString>

/// Two ends of a reference. Paths are relative to the project folder.
struct ReferenceEnds
{
    QString folder; ///< where it begins: "" or with a backslash at its end
    QString target;
};

/// A reference, as written in a page, that leads between the ends `now` instead of `before`. Only
/// the names in its path that have to change do; the others, anchor and query stay as written.
/// New names are percent-encoded, so that they fit into a page of any encoding.
QString redirected(const QString &written, const ReferenceEnds &before, const ReferenceEnds &now);
