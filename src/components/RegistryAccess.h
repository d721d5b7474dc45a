#pragma once

#include "platform/Registry.h"

#include <QString>

/// The product's registry access component: string values, and the server path.
class RegistryAccess
{
public:
    virtual ~RegistryAccess() = default;

    /// Makes the key when needed and stores the value. Raises 70 when the store refuses.
    virtual void SetValueName(Hive hive, const QString &key, const QString &valueName,
                              const QString &value) = 0;
    /// The stored value. Raises 5 when key or value is absent.
    virtual QString vGetValueName(Hive hive, const QString &key, const QString &valueName) = 0;
    /// The server installation folder that holds "Docs\", ending in a backslash; the component's
    /// own value. Raises 5 when none is set.
    virtual QString GetQVServer() = 0;
    /// Sets what `GetQVServer` returns; used when the author picks a server on the first run.
    virtual void SetQVServer(const QString &serverPath) = 0;
};

namespace RegistryKey {
inline constexpr QLatin1StringView product{R"(Software\Talmeric\Zel\Quovane)"};
inline constexpr QLatin1StringView splash{R"(SOFTWARE\Talmeric\Zel)"};
inline constexpr QLatin1StringView compiler{R"(Software\Talmeric\Zel\Quovane\Compiler\DBTOXML\)"};
} // namespace RegistryKey
