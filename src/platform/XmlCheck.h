#pragma once

#include <QByteArray>
#include <QString>

// What stands between the bytes of a file and the parser, which lets too much pass.

/// The text of an XML file, without its byte-order mark, with its own line ends. The mark decides,
/// then the first bytes (UTF-16 without a mark), then the declared encoding, else UTF-8.
/// Raises 75 with the plain reason when the bytes are not strictly what they claim to be, or hold a
/// character that XML forbids.
QString decodeXml(const QByteArray &bytes);

/// Raises 75 with the reason and the line unless `text` is well formed, has no DOCTYPE and is
/// nested at most 64 deep. Prefixes need not be declared. A text with instructions gets LF line
/// ends; elsewhere the parser sees to that itself.
void checkWellFormed(QString &text);

/// True when XML can hold the text: no control character but tab and line ends, no lone surrogate,
/// neither U+FFFE nor U+FFFF.
bool isXmlText(QStringView text);

/// Appends `text` as our files hold it: CRLF for LF. A carriage return that belongs to a text can
/// only be written as a reference.
void appendFileLines(QString &target, QStringView text);
