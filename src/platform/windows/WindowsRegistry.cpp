#include "platform/windows/WindowsRegistry.h"

#include "platform/windows/WindowsErrors.h"
#include "platform/windows/win32/RegistryKeys.h"

using namespace Qt::StringLiterals;

namespace {

/// The text in the process's code page; nothing when that has not all of its characters.
std::optional<std::string> bytesOf(const QString &text)
{
    const std::wstring wide = text.toStdWString();
    if (wide.empty())
        return std::string();
    const auto convert = [&](char *to, int size, BOOL *lost) {
        const bool isUnicode = GetACP() == CP_UTF8; // which fails where another one asks
        return WideCharToMultiByte(CP_ACP, isUnicode ? WC_ERR_INVALID_CHARS : WC_NO_BEST_FIT_CHARS,
                                   wide.data(), int(wide.size()), to, size, nullptr,
                                   isUnicode ? nullptr : lost);
    };
    BOOL lost = FALSE;
    std::string bytes(size_t(convert(nullptr, 0, &lost)), '\0');
    if (convert(bytes.data(), int(bytes.size()), &lost) == 0 || lost)
        return std::nullopt;
    return bytes;
}

QString textOf(const std::string &bytes)
{
    const auto convert = [&](wchar_t *to, int size) {
        return MultiByteToWideChar(CP_ACP, 0, bytes.data(), int(bytes.size()), to, size);
    };
    std::wstring wide(size_t(convert(nullptr, 0)), L'\0');
    convert(wide.data(), int(wide.size()));
    return QString::fromStdWString(wide);
}

std::optional<QString> stored(HKEY hive, const QString &key, const QString &name)
{
    const auto keyBytes = bytesOf(key);
    const auto nameBytes = bytesOf(name);
    if (!keyBytes || !nameBytes)
        return std::nullopt;
    try {
        const auto bytes = win32::registryText(hive, *keyBytes, *nameBytes);
        return bytes ? std::optional(textOf(*bytes)) : std::nullopt;
    } catch (const win32::Error &error) {
        throw QvError(
            PathFileAccess, {},
            u"The registry cannot be read: %1\\%2 (%3)"_s.arg(
                hive == HKEY_CURRENT_USER ? "HKEY_CURRENT_USER"_L1 : "HKEY_LOCAL_MACHINE"_L1, key,
                QString::fromStdWString(win32::describe(error.code))));
    }
}

/// A value of the user's own, so that it is the one to change; also one that cannot be read.
bool hidesTheMachines(const QString &key, const QString &name)
{
    try {
        return stored(HKEY_CURRENT_USER, key, name).has_value();
    } catch (const QvError &) {
        return true;
    }
}

} // namespace

WindowsRegistry::WindowsRegistry()
{
    if (!qEnvironmentVariableIsEmpty("QUOVANE_SETTINGS"))
        m_files.emplace();
}

std::optional<QString> WindowsRegistry::value(Hive hive, const QString &key, const QString &name)
{
    if (m_files)
        return m_files->value(hive, key, name);
    const auto own = stored(HKEY_CURRENT_USER, key, name);
    return own || hive == Hive::CurrentUser ? own : stored(HKEY_LOCAL_MACHINE, key, name);
}

bool WindowsRegistry::setValue(Hive hive, const QString &key, const QString &name,
                               const QString &value)
{
    return store(hive, key, name, value, win32::Ending::Zero);
}

bool WindowsRegistry::setBareValue(Hive hive, const QString &key, const QString &name,
                                   const QString &value)
{
    return store(hive, key, name, value, win32::Ending::None);
}

bool WindowsRegistry::store(Hive hive, const QString &key, const QString &name,
                            const QString &value, win32::Ending ending)
{
    if (m_files)
        return m_files->setValue(hive, key, name, value);
    const auto keyBytes = bytesOf(key);
    const auto nameBytes = bytesOf(name);
    const auto bytes = bytesOf(value);
    if (!keyBytes || !nameBytes || !bytes)
        return false;
    const auto storeBelow = [&](HKEY root) {
        return win32::setRegistryText(root, *keyBytes, *nameBytes, *bytes, ending);
    };
    const bool isUsers = hive == Hive::CurrentUser || hidesTheMachines(key, name);
    return (!isUsers && storeBelow(HKEY_LOCAL_MACHINE)) || storeBelow(HKEY_CURRENT_USER);
}
