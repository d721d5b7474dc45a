#pragma once

#include "platform/FileSystem.h"

/// Waits for the byte-range lock on the file at the native path `place`, made when missing with
/// the permissions of `like` (a native path). Null when it was held elsewhere all the time.
std::unique_ptr<FileLock> lockFileAt(const QByteArray &place, const QString &path,
                                     const QByteArray &like, std::chrono::milliseconds patience);
