#pragma once

#include <QString>
#include <QStringList>

/// Folders of a project are at most this deep below each other.
inline constexpr qsizetype deepestFolder = 8;

/// A name that every disk takes, that links can hold as it is, and that is none of the product's
/// working files; `name` itself where it is one already. Long names are shortened.
QString safeName(const QString &name);

/// A path out of a database as safe names, each below the one before: "." and ".." are worked out;
/// drive, root and ".." that lead out are left out. Nothing when nothing is left.
QStringList safePieces(const QString &path);

/// `name`, made safe already, for something directly in the project folder: none of the names that
/// the product gives its own files there by a rule. "_QV_Toc.xml" for "QV_Toc.xml".
QString safeAtTop(const QString &name);

/// "a_2.htm" for "a.htm": `addition` goes before the ending.
QString withAddition(const QString &name, const QString &addition);
