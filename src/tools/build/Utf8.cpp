#include "tools/build/Utf8.h"

#include <algorithm>

namespace {

char continued(char32_t bits)
{
    return static_cast<char>(0x80 | (bits & 0x3F));
}

} // namespace

void appendUtf8(std::string &text, char32_t code)
{
    if (code < 0x80) {
        text += static_cast<char>(code);
        return;
    }
    if (code < 0x800) {
        text += static_cast<char>(0xC0 | (code >> 6));
    } else {
        if (code < 0x10000) {
            text += static_cast<char>(0xE0 | (code >> 12));
        } else {
            text += static_cast<char>(0xF0 | (code >> 18));
            text += continued(code >> 12);
        }
        text += continued(code >> 6);
    }
    text += continued(code);
}

bool isAscii(std::string_view text)
{
    return std::all_of(text.begin(), text.end(),
                       [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
}
