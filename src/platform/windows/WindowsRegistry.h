#pragma once

#include "platform/Registry.h"
#include "platform/shared/IniRegistry.h"

#include <optional>

namespace win32 {
enum class Ending;
}

/// The registry of Windows; of the machine's part the 32-bit view. A machine value that the system
/// refuses goes to the same key of the user's part, where it wins on reading, so that nobody needs
/// an administrator. When QUOVANE_SETTINGS names a folder, files in it stand for the registry.
class WindowsRegistry final : public Registry
{
public:
    WindowsRegistry();

    [[nodiscard]] std::optional<QString> value(Hive hive, const QString &key,
                                               const QString &name) override;
    bool setValue(Hive hive, const QString &key, const QString &name,
                  const QString &value) override;
    bool setBareValue(Hive hive, const QString &key, const QString &name,
                      const QString &value) override;

private:
    bool store(Hive hive, const QString &key, const QString &name, const QString &value,
               win32::Ending ending);

    std::optional<IniRegistry> m_files;
};
