#pragma once

#include "platform/CharacterSet.h"

// Encodings by the numbers that Windows has for them. Other systems have none.

/// 0 when there is no such code page here.
[[nodiscard]] unsigned codePageFor(const QByteArray &name);

[[nodiscard]] CharacterSet::Decoded decodeByCodePage(unsigned codePage, QByteArrayView bytes);
[[nodiscard]] CharacterSet::Encoded encodeByCodePage(unsigned codePage, QStringView text);
