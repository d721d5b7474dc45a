#pragma once

#include "platform/FileSystem.h"

#include <memory>

/// Held while a project is built or packed: two builds would write into the same folders, and a
/// pack would take half of what a build writes. `folder` is the project's, with backslash. Null
/// where no lock can be made: who may only read there disturbs nobody. Raises 70 while another
/// program holds it.
std::unique_ptr<FileLock> lockBuild(FileSystem &files, const QString &folder);
