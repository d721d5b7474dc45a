#include "tools/NaturalOrder.h"

#include <QString>

namespace {

QStringView digitsAt(QStringView text, qsizetype at)
{
    qsizetype end = at;
    while (end < text.size() && text[end] >= u'0' && text[end] <= u'9')
        ++end;
    return text.sliced(at, end - at);
}

QStringView withoutZeros(QStringView digits)
{
    while (digits.size() > 1 && digits[0] == u'0')
        digits = digits.sliced(1);
    return digits;
}

int compareNumbers(QStringView a, QStringView b)
{
    a = withoutZeros(a);
    b = withoutZeros(b);
    if (a.size() != b.size())
        return a.size() < b.size() ? -1 : 1;
    return a.compare(b);
}

int compareNames(QStringView a, QStringView b)
{
    qsizetype i = 0;
    qsizetype j = 0;
    while (i < a.size() && j < b.size()) {
        const QStringView aDigits = digitsAt(a, i);
        const QStringView bDigits = digitsAt(b, j);
        int order = 0;
        if (!aDigits.isEmpty() && !bDigits.isEmpty()) {
            order = compareNumbers(aDigits, bDigits);
            i += aDigits.size();
            j += bDigits.size();
        } else {
            const QChar x = a[i++].toCaseFolded();
            const QChar y = b[j++].toCaseFolded();
            order = x < y ? -1 : (y < x ? 1 : 0);
        }
        if (order != 0)
            return order;
    }
    return static_cast<int>((a.size() - i) - (b.size() - j));
}

} // namespace

bool naturallyBefore(QStringView a, QStringView b)
{
    while (true) {
        const qsizetype aEnd = a.indexOf(u'\\');
        const qsizetype bEnd = b.indexOf(u'\\');
        const QStringView aPiece = aEnd < 0 ? a : a.first(aEnd);
        const QStringView bPiece = bEnd < 0 ? b : b.first(bEnd);
        const bool aIndex = aEnd < 0 && isIndexPage(aPiece);
        const bool bIndex = bEnd < 0 && isIndexPage(bPiece);
        if (aIndex != bIndex)
            return aIndex;
        if (const int order = compareNames(aPiece, bPiece); order != 0)
            return order < 0;
        if (aEnd < 0 || bEnd < 0)
            return aEnd < 0 && bEnd >= 0;
        a = a.sliced(aEnd + 1);
        b = b.sliced(bEnd + 1);
    }
}

bool isIndexPage(QStringView fileName)
{
    const qsizetype dot = fileName.indexOf(u'.');
    const QStringView stem = dot < 0 ? fileName : fileName.first(dot);
    return stem.compare(u"index", Qt::CaseInsensitive) == 0
           || stem.compare(u"default", Qt::CaseInsensitive) == 0;
}
