#pragma once

#include "platform/FileSystem.h"

/// Keeps a copy of a project's file in the project's _Backup\ folder, named "<file>.<n>": the
/// highest number is the newest, and the last five are kept. A file that is not there needs none.
void backUp(FileSystem &files, const QString &projectFolder, const QString &relativePath);
