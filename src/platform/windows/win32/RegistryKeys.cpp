#include "platform/windows/win32/RegistryKeys.h"

#include <algorithm>
#include <cstring>

namespace win32 {

namespace {

constexpr REGSAM readAccess = KEY_READ | KEY_WOW64_32KEY;
constexpr REGSAM writeAccess = KEY_WRITE | KEY_WOW64_32KEY;

struct Key
{
    HKEY handle = nullptr;
    ~Key() { RegCloseKey(handle); }
};

std::string expanded(const std::string &text)
{
    std::string result(32 * 1024, '\0'); // the system's limit
    const DWORD size = ExpandEnvironmentStringsA(text.c_str(), result.data(), DWORD(result.size()));
    return size == 0 || size > result.size() ? text : std::string(result.c_str());
}

std::string textOf(DWORD type, std::string bytes)
{
    DWORD number = 0;
    if (type == REG_DWORD && bytes.size() == sizeof(number)) {
        std::memcpy(&number, bytes.data(), sizeof(number));
        return std::to_string(number);
    }
    bytes.erase(bytes.find_last_not_of('\0') + 1);
    return type == REG_EXPAND_SZ ? expanded(bytes) : bytes;
}

/// A value as it lies there; nothing when it does not.
std::optional<std::string> storedBytes(HKEY key, const std::string &name, DWORD &type)
{
    DWORD size = 0;
    LSTATUS code = RegQueryValueExA(key, name.c_str(), nullptr, &type, nullptr, &size);
    std::string bytes(size, '\0');
    while (code == ERROR_SUCCESS || code == ERROR_MORE_DATA) {
        code = RegQueryValueExA(key, name.c_str(), nullptr, &type,
                                reinterpret_cast<BYTE *>(bytes.data()), &size);
        if (code != ERROR_MORE_DATA)
            break;
        // Another program has stored a longer one between the two questions.
        bytes.resize(std::max<size_t>(size, 2 * bytes.size() + 1));
        size = DWORD(bytes.size());
    }
    if (code == ERROR_FILE_NOT_FOUND)
        return std::nullopt;
    if (code != ERROR_SUCCESS)
        raise(DWORD(code));
    bytes.resize(size);
    return bytes;
}

} // namespace

std::optional<std::string> registryText(HKEY hive, const std::string &key, const std::string &name)
{
    Key opened;
    const LSTATUS code = RegOpenKeyExA(hive, key.c_str(), 0, readAccess, &opened.handle);
    if (code == ERROR_FILE_NOT_FOUND || code == ERROR_PATH_NOT_FOUND)
        return std::nullopt;
    if (code != ERROR_SUCCESS)
        raise(DWORD(code));
    DWORD type = REG_NONE;
    const auto bytes = storedBytes(opened.handle, name, type);
    return bytes ? std::optional(textOf(type, *bytes)) : std::nullopt;
}

bool setRegistryText(HKEY hive, const std::string &key, const std::string &name,
                     const std::string &text, Ending ending)
{
    Key made;
    DWORD disposition = 0;
    char noClass[] = "";
    if (RegCreateKeyExA(hive, key.c_str(), 0, noClass, REG_OPTION_NON_VOLATILE, writeAccess,
                        nullptr, &made.handle, &disposition)
        != ERROR_SUCCESS)
        return false;
    // Unasked the system stores a zero byte too when it finds one behind the text.
    const bool isBare = ending == Ending::None;
    const std::string bytes = text + (isBare ? '.' : '\0');
    return RegSetValueExA(made.handle, name.c_str(), 0, REG_SZ,
                          reinterpret_cast<const BYTE *>(bytes.data()),
                          DWORD(isBare ? text.size() : bytes.size()))
           == ERROR_SUCCESS;
}

} // namespace win32
