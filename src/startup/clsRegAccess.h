#pragma once

#include "platform/Registry.h"

#include <QString>

/// The registry class for the paths of the database-to-XML compiler: value "Path" of the machine's
/// key "Software\Talmeric\Zel\Quovane\Compiler\DBTOXML\<subKey>".
class clsRegAccess final
{
public:
    explicit clsRegAccess(Registry &registry);

    /// The stored path up to its first NUL character; "" when key or value is missing.
    QString mstrGetDesPath(const QString &subKey);
    /// Stores the path. A key that cannot be made is silently left.
    void msetPathInfo(const QString &subKey, const QString &path);

private:
    Registry &m_registry;
};
