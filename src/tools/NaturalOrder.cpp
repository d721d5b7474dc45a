#include "tools/NaturalOrder.h"

#include <algorithm>

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

} // namespace

void appendNaturalKey(QString &keys, QStringView text)
{
    for (qsizetype at = 0; at < text.size();) {
        if (const QStringView digits = digitsAt(text, at); !digits.isEmpty()) {
            at += digits.size();
            const QStringView value = withoutZeros(digits);
            keys += u'0'; // stands among other characters where digits do; longer is greater
            keys += QChar(static_cast<char16_t>(std::min<qsizetype>(value.size(), 0xFFFF)));
            keys += value;
        } else {
            const QChar c = text[at++];
            keys += c == u'\\' || c == u'/' ? QChar(1) : c.toCaseFolded();
        }
    }
}

QString naturalPageKey(QStringView path)
{
    const qsizetype name = path.lastIndexOf(u'\\') + 1;
    QString key;
    appendNaturalKey(key, path.first(name));
    if (isIndexPage(path.sliced(name)))
        key += QChar(0);
    appendNaturalKey(key, path.sliced(name));
    return key;
}

bool isIndexPage(QStringView fileName)
{
    const qsizetype dot = fileName.indexOf(u'.');
    const QStringView stem = dot < 0 ? fileName : fileName.first(dot);
    return stem.compare(u"index", Qt::CaseInsensitive) == 0
           || stem.compare(u"default", Qt::CaseInsensitive) == 0;
}
