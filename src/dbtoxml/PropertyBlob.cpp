#include "dbtoxml/PropertyBlob.h"

#include <QtEndian>

namespace {

quint16 shortAt(QByteArrayView bytes, qsizetype place)
{
    return qFromLittleEndian<quint16>(bytes.data() + place);
}

/// Names one after the other, each behind its length; how many, or -1.
int countNames(QByteArrayView names)
{
    constexpr qsizetype lengthSize = 2;
    int count = 0;
    for (; names.size() >= lengthSize; ++count) {
        const qsizetype size = lengthSize + shortAt(names, 0);
        if (size > names.size())
            return -1;
        names = names.sliced(size);
    }
    return names.isEmpty() ? count : -1;
}

/// Settings of one column: its name, then records that name a setting by its number.
bool areSound(QByteArrayView settings, int names)
{
    constexpr qsizetype nameLengthPlace = 4, namePlace = 6, numberPlace = 4, sizePlace = 6,
                        valuePlace = 8;
    if (settings.size() < namePlace)
        return false;
    const qsizetype first = namePlace + shortAt(settings, nameLengthPlace);
    if (first > settings.size())
        return false;
    for (QByteArrayView rest = settings.sliced(first); !rest.isEmpty();) {
        if (rest.size() < valuePlace)
            return false;
        const qsizetype size = shortAt(rest, 0);
        if (size < valuePlace + shortAt(rest, sizePlace) || size > rest.size()
            || shortAt(rest, numberPlace) >= names)
            return false;
        rest = rest.sliced(size);
    }
    return true;
}

} // namespace

bool isSoundPropertyBlob(QByteArrayView blob)
{
    constexpr qsizetype markSize = 4, headSize = 6, typePlace = 4;
    constexpr quint16 namesType = 0x80;
    if (!blob.startsWith(QByteArrayView("MR2\0", markSize)))
        return false;
    int names = 0;
    for (QByteArrayView rest = blob.sliced(markSize); !rest.isEmpty();) {
        if (rest.size() < headSize)
            return false;
        const qsizetype size = qFromLittleEndian<quint32>(rest.data());
        if (size < headSize || size > rest.size())
            return false;
        const QByteArrayView content = rest.sliced(headSize, size - headSize);
        const quint16 type = shortAt(rest, typePlace);
        if (type == namesType)
            names = countNames(content);
        if (names < 0 || (type != namesType && !areSound(content, names)))
            return false;
        rest = rest.sliced(size);
    }
    return true;
}
