#pragma once

#include <QMetaType>
#include <QString>

/// A page that the viewer can show.
struct ViewerPlace
{
    QString set;         ///< project name; "" for the product's own help
    QString page;        ///< relative to the project's or the help folder, with backslashes
    QString anchor = {}; ///< "" for the top
    friend bool operator==(const ViewerPlace &, const ViewerPlace &) = default;
};
Q_DECLARE_METATYPE(ViewerPlace)
