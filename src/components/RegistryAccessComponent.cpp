#include "components/RegistryAccessComponent.h"

#include "platform/Paths.h"
#include "platform/QvError.h"

using namespace Qt::StringLiterals;

RegistryAccessComponent::RegistryAccessComponent(Registry &registry)
    : m_registry(registry)
{
}

void RegistryAccessComponent::SetValueName(Hive hive, const QString &key, const QString &valueName,
                                           const QString &value)
{
    if (!m_registry.setValue(hive, key, valueName, value))
        throw QvError(PermissionDenied, u"RegistryAccess::SetValueName"_s,
                      u"The setting \"%1\" of %2 cannot be stored"_s.arg(valueName, key));
}

QString RegistryAccessComponent::vGetValueName(Hive hive, const QString &key,
                                               const QString &valueName)
{
    const auto value = m_registry.value(hive, key, valueName);
    if (!value)
        throw QvError(InvalidCall, u"RegistryAccess::vGetValueName"_s,
                      u"The setting \"%1\" of %2 is not there"_s.arg(valueName, key));
    return *value;
}

QString RegistryAccessComponent::GetQVServer()
{
    const QString server = vGetValueName(Hive::LocalMachine, RegistryKey::product, serverValue);
    if (server.isEmpty())
        throw QvError(InvalidCall, u"RegistryAccess::GetQVServer"_s,
                      u"The server folder is not set (value \"%1\" of %2)"_s.arg(
                          serverValue, RegistryKey::product));
    return withBackslash(server);
}

void RegistryAccessComponent::SetQVServer(const QString &serverPath)
{
    SetValueName(Hive::LocalMachine, RegistryKey::product, serverValue, withBackslash(serverPath));
}
