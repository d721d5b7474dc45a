#pragma once

#include "platform/windows/win32/Handle.h"

#include <chrono>
#include <optional>
#include <string>

namespace win32 {

/// Locks a byte behind the end of the file, which is made when missing. Nothing when another handle
/// held it all the time. The lock goes with the handle. Raises where the disk has no locks.
[[nodiscard]] std::optional<Handle> lockFile(const std::wstring &path,
                                             std::chrono::milliseconds patience);

} // namespace win32
