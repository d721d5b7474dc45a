#pragma once

#include "platform/Xml.h"
#include "support/Errors.h"

#include <QStringDecoder>

/// The bytes of one of our XML files whose lines below the declaration are these.
inline QByteArray xmlFile(QString lines)
{
    lines.replace(u'\n', QLatin1StringView("\r\n"));
    return utf16Bytes(xmlDeclaration + QStringLiteral("\r\n") + lines);
}

/// The text of such a file, with plain line ends.
inline QString xmlText(const QByteArray &bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf16LE);
    return QString(decoder.decode(bytes)).remove(u'\r');
}
