// Values of the registry, ours and what others stored.
#include "Checks.h"
#include "platform/windows/win32/RegistryKeys.h"

using namespace win32;

namespace {

constexpr auto checkKey = "Software\\Quovane adapters check";

/// Stored by another program.
void putValue(DWORD type, const std::string &bytes)
{
    HKEY key = nullptr;
    RegCreateKeyA(HKEY_CURRENT_USER, checkKey, &key);
    RegSetValueExA(key, "Path", 0, type, reinterpret_cast<const BYTE *>(bytes.data()),
                   DWORD(bytes.size()));
    RegCloseKey(key);
}

auto storedText()
{
    return registryText(HKEY_CURRENT_USER, checkKey, "Path");
}

/// Of the value as it lies there, in bytes.
DWORD storedSize()
{
    HKEY key = nullptr;
    DWORD size = 0;
    RegOpenKeyExA(HKEY_CURRENT_USER, checkKey, 0, KEY_READ, &key);
    RegQueryValueExW(key, L"Path", nullptr, nullptr, nullptr, &size);
    RegCloseKey(key);
    return size;
}

void theRegistryKeepsExactlyTheText()
{
    const auto store = [](const std::string &text, Ending ending) {
        return setRegistryText(HKEY_CURRENT_USER, checkKey, "Path", text, ending);
    };
    CHECK(!storedText());
    CHECK(store("C:\\Data", Ending::None));
    CHECK(storedText() == "C:\\Data");
    CHECK(storedSize() == 7 * sizeof(wchar_t));
    CHECK(store("C:\\Data", Ending::Zero));
    CHECK(storedText() == "C:\\Data");
    CHECK(storedSize() == 8 * sizeof(wchar_t));
    for (const std::string &text :
         {std::string("a\0b", 3), std::string(), std::string(70000, 'x')}) {
        CHECK(store(text, Ending::None) && storedText() == text);
        CHECK(store(text, Ending::Zero) && storedText() == text);
    }
    CHECK(!registryText(HKEY_CURRENT_USER, checkKey, "Other"));
    RegDeleteKeyA(HKEY_CURRENT_USER, checkKey);
}

void aKeyWithoutRightsIsNotAMissingOne()
{
    HKEY key = nullptr;
    RegCreateKeyA(HKEY_CURRENT_USER, checkKey, &key);
    Nobody nobody;
    RegSetKeySecurity(key, DACL_SECURITY_INFORMATION, &nobody.descriptor);
    CHECK(raised([] { (void)storedText(); }) == ERROR_ACCESS_DENIED);
    CHECK(!setRegistryText(HKEY_CURRENT_USER, checkKey, "Path", "x", Ending::Zero));
    SetSecurityDescriptorDacl(&nobody.descriptor, TRUE, nullptr, FALSE); // everybody's
    RegSetKeySecurity(key, DACL_SECURITY_INFORMATION, &nobody.descriptor);
    RegCloseKey(key);
    RegDeleteKeyA(HKEY_CURRENT_USER, checkKey);
    CHECK(!storedText());
}

void theRegistryTellsWhatOthersStored()
{
    SetEnvironmentVariableA("QV_CHECK", "C:\\Client");
    putValue(REG_DWORD, std::string("\1\0\0\0", 4));
    CHECK(storedText() == "1");
    putValue(REG_EXPAND_SZ, "%QV_CHECK%\\Bin");
    CHECK(storedText() == "C:\\Client\\Bin");
    putValue(REG_SZ, std::string("%QV_CHECK%\0\0", 12));
    CHECK(storedText() == "%QV_CHECK%");
    RegDeleteKeyA(HKEY_CURRENT_USER, checkKey);
}

} // namespace

void checkRegistry()
{
    theRegistryKeepsExactlyTheText();
    theRegistryTellsWhatOthersStored();
    aKeyWithoutRightsIsNotAMissingOne();
}
