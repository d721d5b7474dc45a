#pragma once

#include <QString>

/// A target as a link file publishes it, below its IBD.
inline QString linkTarget(const QString &identifier, const QString &path)
{
    return QStringLiteral("<ID><LinkID>%1</LinkID><LinkIDSourceFile>%2</LinkIDSourceFile></ID>")
        .arg(identifier, path);
}

/// A reference to such a target, below its IBS.
inline QString linkReference(const QString &identifier, const QString &path)
{
    return QStringLiteral("<USER><LinkID>%1</LinkID><FilePath>%2</FilePath></USER>")
        .arg(identifier, path);
}
