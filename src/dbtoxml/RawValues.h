#pragma once

#include <QByteArrayView>
#include <QDateTime>
#include <QString>

#include <optional>

// Values from the bytes of a database field.

struct DecodedText
{
    QString text;
    bool isClean = true; ///< false when something in it was no text and became U+FFFD
};

/// Texts are UTF-16, or after a mark pieces of one and of two bytes a character.
DecodedText decodeText(QByteArrayView bytes);

/// 1, 2 or 4 bytes with sign; 0 of any other number of bytes.
qint64 integerOf(QByteArrayView bytes);

/// Days since 1899-12-30; the fraction is the time of the day and counts forward before that day
/// too. Nothing when that is no day of the years 100 to 9999.
std::optional<QDateTime> dateOfDays(QByteArrayView bytes);
