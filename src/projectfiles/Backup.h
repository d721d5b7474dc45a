#pragma once

#include "platform/FileSystem.h"

#include <optional>

/// Keeps a copy of a project's file in the project's _Backup\ folder, named "<file>.<n>": the
/// highest number is the newest, and the last five are kept. A file that is not there needs none.
/// `content` is what the file holds, where that is known.
void backUp(FileSystem &files, const QString &projectFolder, const QString &relativePath,
            const std::optional<QByteArray> &content = std::nullopt);
