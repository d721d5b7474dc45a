#include "components/ProductInfoFromRegistry.h"

#include "components/RegistryAccess.h"
#include "platform/Paths.h"
#include "platform/QvError.h"

using namespace Qt::StringLiterals;

QString GeneralTasksComponent::QVDeveloperVersion()
{
    return QStringLiteral(QV_VERSION);
}

InstallInfoFromRegistry::InstallInfoFromRegistry(Registry &registry)
    : m_registry(registry)
{
}

QString InstallInfoFromRegistry::ClientPath()
{
    const auto client = m_registry.value(Hive::LocalMachine, RegistryKey::product, u"Client"_s);
    if (!client || client->isEmpty())
        throw QvError(InvalidCall, u"InstallInfo::ClientPath"_s,
                      u"The client installation folder is not set (value \"Client\" of %1)"_s.arg(
                          RegistryKey::product));
    return withBackslash(*client);
}
