#pragma once

#include "platform/QvError.h"
#include "platform/Xml.h"

#include <QStringDecoder>

#include <functional>

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

/// The error that `body` raises; one with number 0 when it raises none.
inline QvError raisedBy(const std::function<void()> &body)
{
    try {
        body();
    } catch (const QvError &error) {
        return error;
    }
    return {0, {}, {}};
}
