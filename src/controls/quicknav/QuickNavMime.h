#pragma once

#include <QString>
#include <QStringList>

class QMimeData;

inline constexpr QLatin1StringView quickNavMimeType{"application/x-qv-quick-navigation"};

/// What the quick-navigation editor drags and puts on the clipboard: nodes of one level, or links.
struct QuickNavItems
{
    static constexpr int linkLevel = 4;

    QString projectFolder; ///< full path; with another one they are none of the open project's
    int level = -1;        ///< 0 view to 3 category; 4 links
    QStringList ids = {};
    bool cut = false; ///< from the clipboard: to be moved, not to be copied
};

void putItems(QMimeData &mime, const QuickNavItems &items);
/// Level -1 when there are none of this project.
QuickNavItems itemsIn(const QMimeData *mime, const QString &projectFolder);
