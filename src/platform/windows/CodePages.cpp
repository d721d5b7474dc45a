#include "platform/CodePages.h"

#include <algorithm>

#include <qt_windows.h>

namespace {

struct Named
{
    const char *name; // in lower case
    unsigned codePage;
};

constexpr Named namedPages[] = {
    {"gb18030", 54936},     {"gb2312", 936},        {"gbk", 936},           {"big5", 950},
    {"big5-hkscs", 950},    {"shift_jis", 932},     {"euc-jp", 20932},      {"euc-kr", 949},
    {"iso-2022-jp", 50220}, {"iso-2022-kr", 50225}, {"iso-8859-2", 28592},  {"iso-8859-3", 28593},
    {"iso-8859-4", 28594},  {"iso-8859-5", 28595},  {"iso-8859-6", 28596},  {"iso-8859-7", 28597},
    {"iso-8859-8", 28598},  {"iso-8859-9", 28599},  {"iso-8859-13", 28603}, {"iso-8859-15", 28605},
    {"koi8-r", 20866},      {"koi8-u", 21866},      {"macintosh", 10000},   {"ibm850", 850},
    {"ibm437", 437},
};

unsigned numberIn(const QByteArray &name)
{
    if (name.startsWith("windows-"))
        return name.sliced(8).toUInt();
    if (name.startsWith("cp"))
        return name.sliced(2).toUInt();
    const auto *const found = std::find_if(std::begin(namedPages), std::end(namedPages),
                                           [&](const Named &each) { return name == each.name; });
    return found == std::end(namedPages) ? 0 : found->codePage;
}

/// Pages that are states or algorithms take none of the flags that ask for exactness.
bool takesFlags(unsigned codePage)
{
    return codePage < 50000;
}

int widen(unsigned codePage, DWORD flags, QByteArrayView bytes, QString &text)
{
    const auto convert = [&](wchar_t *to, int room) {
        return MultiByteToWideChar(codePage, flags, bytes.data(), int(bytes.size()), to, room);
    };
    text.resize(convert(nullptr, 0));
    return convert(reinterpret_cast<wchar_t *>(text.data()), int(text.size()));
}

} // namespace

unsigned codePageFor(const QByteArray &name)
{
    const unsigned number = numberIn(name.toLower());
    return number != 0 && IsValidCodePage(number) ? number : 0;
}

CharacterSet::Decoded decodeByCodePage(unsigned codePage, QByteArrayView bytes)
{
    CharacterSet::Decoded result;
    if (bytes.isEmpty())
        return result;
    const DWORD exact = takesFlags(codePage) || codePage == 54936 ? MB_ERR_INVALID_CHARS : 0;
    if (widen(codePage, exact, bytes, result.text) == 0) {
        result.hasError = true;
        widen(codePage, 0, bytes, result.text);
    }
    return result;
}

CharacterSet::Encoded encodeByCodePage(unsigned codePage, QStringView text)
{
    CharacterSet::Encoded result;
    if (text.isEmpty())
        return result;
    BOOL lost = FALSE;
    const bool exact = takesFlags(codePage);
    const auto convert = [&](char *to, int room) {
        return WideCharToMultiByte(codePage, exact ? WC_NO_BEST_FIT_CHARS : 0,
                                   reinterpret_cast<const wchar_t *>(text.utf16()),
                                   int(text.size()), to, room, nullptr, exact ? &lost : nullptr);
    };
    result.bytes.resize(convert(nullptr, 0));
    convert(result.bytes.data(), int(result.bytes.size()));
    result.hasError = lost || decodeByCodePage(codePage, result.bytes).text != text;
    return result;
}
