#include "indexmanager/ShortList.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>

QString shortList(const QStringList &texts, const QString &separator)
{
    constexpr qsizetype shown = 3;
    const QString first = texts.first(std::min(shown, texts.size())).join(separator);
    return texts.size() <= shown ? first
                                 : QCoreApplication::translate("ShortList", "%1 and %2 more")
                                       .arg(first, QLocale().toString(texts.size() - shown));
}
