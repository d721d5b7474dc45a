#pragma once

#include <QString>

class FileSystem;

/// The page of the help that leads to all others.
inline constexpr QLatin1StringView helpStartPage{"index.html"};

/// The folder of the help, with a backslash: the first with a start page among `named` (a native
/// path, may be empty) and, seen from the folder of the program, "help", "../share/quovane/help"
/// and "../../share/quovane/help". "" when none has.
QString findHelpFolder(FileSystem &files, const QString &named, const QString &programFolder);
