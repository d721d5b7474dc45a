#pragma once

#include <QChar>

// What the scanner's parts ask of one unit of a page, which is a character of a text or a byte.

constexpr char32_t unit(QChar c)
{
    return c.unicode();
}

constexpr char32_t unit(char c)
{
    return static_cast<unsigned char>(c);
}

constexpr bool isBlank(char32_t c)
{
    return c == ' ' || c == '\n' || c == '\t' || c == '\r' || c == '\f';
}
