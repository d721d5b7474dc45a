#include "dbtoxml/RawValues.h"

#include <QtEndian>

#include <cmath>

namespace {

constexpr QChar halfCharacter{0xdc00}; // at a cut end; mended like any other half

QString unpacked(QByteArrayView bytes)
{
    QString text;
    text.reserve(bytes.size());
    bool isNarrow = true;
    for (qsizetype i = 0; i < bytes.size();) {
        if (bytes[i] == 0) {
            isNarrow = !isNarrow;
            ++i;
        } else if (isNarrow) {
            text += QLatin1Char(bytes[i++]);
        } else if (i + 1 < bytes.size()) {
            text += QChar(qFromLittleEndian<char16_t>(bytes.data() + i));
            i += 2;
        } else {
            text += halfCharacter;
            ++i;
        }
    }
    return text;
}

QString utf16(QByteArrayView bytes)
{
    constexpr qsizetype unit = sizeof(char16_t);
    QString text(bytes.size() / unit, Qt::Uninitialized);
    qFromLittleEndian<char16_t>(bytes.data(), text.size(), text.data());
    if (bytes.size() % unit != 0)
        text += halfCharacter;
    return text;
}

/// Halves of pairs become U+FFFD. True when there was none.
bool mend(QString &text)
{
    bool isClean = true;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (!QStringView(text)[i].isSurrogate())
            continue;
        const bool isPair =
            text.at(i).isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate();
        if (isPair) {
            ++i;
        } else {
            text[i] = QChar(QChar::ReplacementCharacter);
            isClean = false;
        }
    }
    return isClean;
}

} // namespace

DecodedText decodeText(QByteArrayView bytes)
{
    if (bytes.isEmpty())
        return {};
    const bool isPacked = bytes.startsWith(QByteArrayView("\xff\xfe"));
    DecodedText decoded{isPacked ? unpacked(bytes.sliced(2)) : utf16(bytes)};
    decoded.isClean = mend(decoded.text);
    return decoded;
}

qint64 integerOf(QByteArrayView bytes)
{
    switch (bytes.size()) {
    case sizeof(quint8):
        return static_cast<quint8>(bytes[0]);
    case sizeof(qint16):
        return qFromLittleEndian<qint16>(bytes.data());
    case sizeof(qint32):
        return qFromLittleEndian<qint32>(bytes.data());
    default:
        return 0;
    }
}

std::optional<QDateTime> dateOfDays(QByteArrayView bytes)
{
    constexpr double first = -657434, last = 2958465; // 0100-01-01 and 9999-12-31
    constexpr double millisecondsOfDay = 86'400'000;
    if (bytes.size() != sizeof(double))
        return {};
    const auto value = qFromLittleEndian<double>(bytes.data());
    const double days = std::trunc(value);
    if (!(days >= first && days <= last)) // not a number either
        return {};
    const QDate date = QDate(1899, 12, 30).addDays(static_cast<qint64>(days));
    const double time = std::round(std::abs(value - days) * millisecondsOfDay);
    return QDateTime(date, QTime(0, 0), Qt::UTC).addMSecs(static_cast<qint64>(time));
}
