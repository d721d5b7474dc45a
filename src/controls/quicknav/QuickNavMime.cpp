#include "controls/quicknav/QuickNavMime.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMimeData>

using namespace Qt::StringLiterals;

void putItems(QMimeData &mime, const QuickNavItems &items)
{
    const QJsonObject all{{u"project"_s, items.projectFolder},
                          {u"level"_s, items.level},
                          {u"ids"_s, QJsonArray::fromStringList(items.ids)},
                          {u"cut"_s, items.cut}};
    mime.setData(quickNavMimeType, QJsonDocument(all).toJson(QJsonDocument::Compact));
}

QuickNavItems itemsIn(const QMimeData *mime, const QString &projectFolder)
{
    if (mime == nullptr || !mime->hasFormat(quickNavMimeType))
        return {};
    const QJsonObject all = QJsonDocument::fromJson(mime->data(quickNavMimeType)).object();
    if (all.value("project"_L1).toString() != projectFolder)
        return {};
    QuickNavItems items{
        projectFolder, all.value("level"_L1).toInt(-1), {}, all.value("cut"_L1).toBool()};
    for (const QJsonValue &id : all.value("ids"_L1).toArray())
        items.ids.append(id.toString());
    return items.ids.isEmpty() ? QuickNavItems() : items;
}
