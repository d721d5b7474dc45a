#include "platform/windows/win32/Win32Error.h"

namespace win32 {

void raise(DWORD code)
{
    throw Error{code};
}

void raiseLast()
{
    raise(GetLastError());
}

bool meansMissing(DWORD code)
{
    // A name that cannot be stands for nothing that is there.
    return code == ERROR_FILE_NOT_FOUND || code == ERROR_PATH_NOT_FOUND
           || code == ERROR_INVALID_NAME || code == ERROR_BAD_PATHNAME;
}

std::wstring describe(DWORD code)
{
    constexpr DWORD flags = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
    wchar_t text[512];
    DWORD size = FormatMessageW(flags, nullptr, code, MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US),
                                text, DWORD(std::size(text)), nullptr);
    if (size == 0)
        size = FormatMessageW(flags, nullptr, code, 0, text, DWORD(std::size(text)), nullptr);
    std::wstring words(text, size);
    words.erase(words.find_last_not_of(L"\r\n .") + 1);
    return words.empty() ? L"Error " + std::to_wstring(code) : words;
}

} // namespace win32
