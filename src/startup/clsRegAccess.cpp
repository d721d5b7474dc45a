#include "startup/clsRegAccess.h"

#include "components/RegistryAccess.h"
#include "platform/QvError.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto valueName = "Path"_L1;

// A path that cannot be read or kept only means that the author browses for it again.
void leaveIt(const QvError &) {}

} // namespace

clsRegAccess::clsRegAccess(Registry &registry)
    : m_registry(registry)
{
}

QString clsRegAccess::mstrGetDesPath(const QString &subKey)
{
    return trap(leaveIt, [&] {
        const QString stored =
            m_registry.value(Hive::LocalMachine, RegistryKey::compiler + subKey, valueName)
                .value_or(QString());
        return stored.section(QChar::Null, 0, 0);
    });
}

void clsRegAccess::msetPathInfo(const QString &subKey, const QString &path)
{
    trap(leaveIt, [&] {
        m_registry.setBareValue(Hive::LocalMachine, RegistryKey::compiler + subKey, valueName,
                                path);
    });
}
