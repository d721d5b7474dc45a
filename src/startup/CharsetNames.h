#pragma once

#include <QByteArray>
#include <QString>

/// The encoding that a page means by the character set it declares: "iso-8859-1" is windows-1252.
QByteArray encodingFor(const QString &declared);
