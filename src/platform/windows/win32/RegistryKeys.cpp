#include "platform/windows/win32/RegistryKeys.h"

namespace win32 {

namespace {

constexpr REGSAM readAccess = 0x20019 | KEY_WOW64_32KEY;  // KEY_READ
constexpr REGSAM writeAccess = 0x20006 | KEY_WOW64_32KEY; // KEY_WRITE

struct Key
{
    HKEY handle = nullptr;
    ~Key() { RegCloseKey(handle); }
};

} // namespace

std::optional<std::string> registryText(HKEY hive, const std::string &key, const std::string &name)
{
    Key opened;
    LSTATUS code = RegOpenKeyExA(hive, key.c_str(), 0, readAccess, &opened.handle);
    if (code == ERROR_FILE_NOT_FOUND || code == ERROR_PATH_NOT_FOUND)
        return std::nullopt;
    if (code != ERROR_SUCCESS)
        raise(DWORD(code));
    DWORD size = 0;
    DWORD type = 0;
    code = RegQueryValueExA(opened.handle, name.c_str(), nullptr, &type, nullptr, &size);
    std::string text(size, '\0');
    // Another program may store a longer one between the two questions.
    while (code == ERROR_SUCCESS || code == ERROR_MORE_DATA) {
        code = RegQueryValueExA(opened.handle, name.c_str(), nullptr, &type,
                                reinterpret_cast<BYTE *>(text.data()), &size);
        if (code == ERROR_SUCCESS)
            break;
        text.resize(size);
    }
    if (code == ERROR_FILE_NOT_FOUND || (code == ERROR_SUCCESS && type != REG_SZ))
        return std::nullopt;
    if (code != ERROR_SUCCESS)
        raise(DWORD(code));
    text.resize(size);
    if (text.ends_with('\0'))
        text.pop_back();
    return text;
}

bool setRegistryText(HKEY hive, const std::string &key, const std::string &name,
                     const std::string &text)
{
    Key made;
    DWORD disposition = 0;
    char noClass[] = "";
    if (RegCreateKeyExA(hive, key.c_str(), 0, noClass, REG_OPTION_NON_VOLATILE, writeAccess,
                        nullptr, &made.handle, &disposition)
        != ERROR_SUCCESS)
        return false;
    // The system stores a zero byte too when it finds one behind the text.
    const std::string bytes = text + '.';
    return RegSetValueExA(made.handle, name.c_str(), 0, REG_SZ,
                          reinterpret_cast<const BYTE *>(bytes.data()), DWORD(text.size()))
           == ERROR_SUCCESS;
}

} // namespace win32
