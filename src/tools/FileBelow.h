#pragma once

#include "platform/FileSystem.h"

#include <optional>

/// The bytes of a file below `folder` (with backslash): a regular one of at most `limit` bytes that
/// is reached without following links. Nothing when there is no such file or `relative` leads
/// elsewhere. Raises what reading raises.
std::optional<QByteArray> readFileBelow(FileSystem &files, const QString &folder,
                                        const QString &relative, qint64 limit);
