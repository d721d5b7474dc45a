#pragma once

#include <QColor>
#include <QPalette>

/// The colour of text that says something is wrong, to be read on a light and on a dark base. It
/// always stands beside a shape and a word.
inline QColor problemColour(const QPalette &palette)
{
    const bool isDark = palette.color(QPalette::Base).lightness() < 128;
    return isDark ? QColor(0xff8a80) : QColor(0xb3261e);
}
