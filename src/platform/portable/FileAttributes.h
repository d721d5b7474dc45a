#pragma once

#include "platform/FileSystem.h"

struct stat;

/// A system status in the product's terms.
FileStatus statusOf(const struct stat &info);

/// Makes a file or folder read-only or writable again, as FileAttribute bits say; this system has
/// no place for the other bits. -1 with errno when it is refused.
int setAttributesAt(const char *native, int attributes);
