#pragma once

#include <QtGlobal>

#include <array>
#include <string_view>

/// A name of an element or attribute as one number, so that names are told apart by a `switch`:
/// exact for up to twelve ASCII letters, digits and "-", ":", "_"; letter case is folded. 0 stands
/// for every other name.
using HtmlKey = quint64;

namespace HtmlName {

inline constexpr size_t longest = 12;     ///< 39 to the 12th just fits
inline constexpr quint8 ends = 255;       ///< blanks, "/", ">"
inline constexpr quint8 equalsSign = 254; ///< ends the name of an attribute

/// 1 to 39 for what may be in a name that is known, 0 for anything else.
constexpr std::array<quint8, 256> makeCodes()
{
    std::array<quint8, 256> codes{};
    for (quint8 letter = 0; letter < 26; ++letter) {
        codes[size_t('a') + letter] = static_cast<quint8>(letter + 1);
        codes[size_t('A') + letter] = static_cast<quint8>(letter + 1);
    }
    for (quint8 digit = 0; digit < 10; ++digit)
        codes[size_t('0') + digit] = static_cast<quint8>(digit + 27);
    codes['-'] = 37;
    codes[':'] = 38;
    codes['_'] = 39;
    for (const char end : {' ', '\n', '\t', '\r', '\f', '/', '>'})
        codes[static_cast<unsigned char>(end)] = ends;
    codes['='] = equalsSign;
    return codes;
}

inline constexpr std::array<quint8, 256> codes = makeCodes();

} // namespace HtmlName

constexpr HtmlKey htmlKey(std::string_view name)
{
    if (name.size() > HtmlName::longest)
        return 0;
    HtmlKey key = 0;
    for (const char c : name) {
        const quint8 code = HtmlName::codes[static_cast<unsigned char>(c)];
        if (code == 0 || code >= HtmlName::equalsSign)
            return 0;
        key = key * 40 + code;
    }
    return key;
}
