#include "qvdev/ConsoleSettings.h"

#include "components/RegistryAccessComponent.h"

std::optional<QString> ConsoleSettings::value(Hive hive, const QString &key, const QString &name)
{
    const bool isServer =
        !m_server.isEmpty() && hive == Hive::LocalMachine
        && key.compare(RegistryKey::product, Qt::CaseInsensitive) == 0
        && name.compare(RegistryAccessComponent::serverValue, Qt::CaseInsensitive) == 0;
    return isServer ? m_server : m_stored.value(hive, key, name);
}

bool ConsoleSettings::setValue(Hive hive, const QString &key, const QString &name,
                               const QString &value)
{
    return m_stored.setValue(hive, key, name, value);
}
