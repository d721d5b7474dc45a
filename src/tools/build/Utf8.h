#pragma once

#include <string>
#include <string_view>

/// A character and how many bytes it takes.
struct Utf8Character
{
    char32_t code = 0;
    int length = 1;
};

/// The character at `at`, which is before `end`. Bytes that are no UTF-8 come one by one as 0.
inline Utf8Character utf8At(const char *at, const char *end)
{
    const auto first = static_cast<unsigned char>(*at);
    if (first < 0x80)
        return {first, 1};
    const int length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : first >= 0xC2 ? 2 : 0;
    if (length == 0 || end - at < length)
        return {};
    char32_t code = first & (0x7FU >> length);
    for (int i = 1; i < length; ++i) {
        if ((at[i] & 0xC0) != 0x80)
            return {};
        code = (code << 6) | static_cast<char32_t>(at[i] & 0x3F);
    }
    return {code, length};
}

void appendUtf8(std::string &text, char32_t code);

bool isAscii(std::string_view text);
