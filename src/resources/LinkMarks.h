#pragma once

#include <QIcon>

/// How good an entry of a list is: a shape of its own each, so that nobody has to tell the colours
/// apart.
enum class LinkMark { None, Good, Warning, Bad, Unchecked };

inline constexpr int linkMarkSize = 16; ///< each side, in device-independent pixels

/// A green disc with a tick, an orange triangle, a red square with a cross, a grey diamond: clear
/// on light and dark.
QIcon linkMarkIcon(LinkMark mark);
