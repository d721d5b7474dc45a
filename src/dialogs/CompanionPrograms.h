#pragma once

#include <QString>

class FileSystem;

/// Copies what comes with this program (help viewer, index manager, command line, converter, the
/// help, and on Windows the libraries that they load) from `programFolder`, the native path of the
/// folder this program was started from, into the existing folder `bin` (with a backslash), with
/// times and permissions. What is there already and is as old and as large stays, other versions
/// give way. What is not beside this program is left out: it is then not found in `bin` either.
void copyCompanions(FileSystem &files, const QString &programFolder, const QString &bin);
