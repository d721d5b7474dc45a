#pragma once

#include <QByteArray>

#include <string_view>

/// A number that tells the contents of two files apart: the same on every machine and in every
/// version, 64 bits, no protection against somebody who wants two to be equal.
quint64 checksum(std::string_view bytes);

/// The same as our files note it: sixteen hexadecimal digits.
QByteArray checksumText(QByteArrayView bytes);
