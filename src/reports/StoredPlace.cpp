#include "reports/StoredPlace.h"

#include <algorithm>

namespace {

QChar compared(QChar character)
{
    return character == u'/' ? QChar(u'\\') : character.toCaseFolded();
}

} // namespace

StoredPlace storedPlace(QStringView stored)
{
    const QString path = stored.toString().replace(u'/', u'\\');
    const qsizetype set = path.indexOf(u'\\');
    const qsizetype anchor = path.lastIndexOf(u'#');
    if (set < 0)
        return {.set = path};
    if (anchor < set)
        return {path.first(set), path.sliced(set + 1)};
    return {path.first(set), path.sliced(set + 1, anchor - set - 1), path.sliced(anchor + 1)};
}

QString placeInSet(const QString &set, QStringView stored)
{
    const StoredPlace place = storedPlace(stored);
    return place.set.compare(set, Qt::CaseInsensitive) == 0 ? place.place() : stored.toString();
}

bool isSamePath(QStringView a, QStringView b)
{
    return std::ranges::equal(a, b, {}, compared, compared);
}
