#pragma once

#include "platform/FileStreams.h"
#include "platform/portable/Descriptor.h"

/// Reads `count` bytes from `offset`, or to the end of the file; how many, -1 with errno.
qint64 readAt(int file, qint64 offset, char *to, qint64 count);

/// An open file of that size; `path` is what the product calls it.
std::unique_ptr<FileReader> readerOf(Descriptor file, qint64 size, const QString &path);
