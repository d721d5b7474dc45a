#pragma once

#include <QString>
#include <QStringView>

/// The parts of a path "<set>\Book_A\start.htm#top" as link files store it, with backslashes.
struct StoredPlace
{
    QString set;       ///< the folder below Docs
    QString page = {}; ///< relative to that folder
    QString anchor = {};
    [[nodiscard]] QString place() const { return anchor.isEmpty() ? page : page + u'#' + anchor; }
};

/// A path without a separator is all set.
StoredPlace storedPlace(QStringView stored);

/// What a link file of `set` stores, as it is shown beside the name of the set: without that name.
QString placeInSet(const QString &set, QStringView stored);

/// Without regard to case and to the kind of slashes.
bool isSamePath(QStringView a, QStringView b);
