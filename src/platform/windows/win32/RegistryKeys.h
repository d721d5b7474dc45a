#pragma once

#include "platform/windows/win32/Win32Error.h"

#include <optional>
#include <string>

// The registry: text values (REG_SZ) under keys below one of the two predefined handles, in the
// 32-bit view of the machine's part, where the product keeps its settings. Texts are bytes in the
// process's code page, which the program's manifest makes UTF-8.

namespace win32 {

/// The stored bytes as they are, with zero bytes inside and without the one at the end. Nothing
/// when key or value is not there; raises what else the system says.
[[nodiscard]] std::optional<std::string> registryText(HKEY hive, const std::string &key,
                                                      const std::string &name);

/// Makes the key when needed. Exactly the bytes of `text` are stored, no zero byte behind them.
/// False when the system refuses.
bool setRegistryText(HKEY hive, const std::string &key, const std::string &name,
                     const std::string &text);

} // namespace win32
