#pragma once

#include "components/RegistryAccess.h"

/// The registry access component over a settings store. The server path is the machine's value
/// "QVServer" of the product's key.
class RegistryAccessComponent final : public RegistryAccess
{
public:
    static constexpr QLatin1StringView serverValue{"QVServer"};

    explicit RegistryAccessComponent(Registry &registry);

    void SetValueName(Hive hive, const QString &key, const QString &valueName,
                      const QString &value) override;
    QString vGetValueName(Hive hive, const QString &key, const QString &valueName) override;
    QString GetQVServer() override;
    void SetQVServer(const QString &serverPath) override;

private:
    Registry &m_registry;
};
