#pragma once

#include "platform/windows/win32/Win32Error.h"

#include <optional>
#include <string>

// The registry: text values under keys below one of the two predefined handles, in the
// 32-bit view of the machine's part, where the product keeps its settings. Texts are bytes in the
// process's code page, which the program's manifest makes UTF-8.

namespace win32 {

/// The stored bytes, with zero bytes inside and without those at the end; of a number (REG_DWORD)
/// its digits, of a text with environment variables (REG_EXPAND_SZ) what it means. Nothing when key
/// or value is not there; raises what else the system says.
[[nodiscard]] std::optional<std::string> registryText(HKEY hive, const std::string &key,
                                                      const std::string &name);

enum class Ending {
    Zero, ///< a zero byte follows, as most readers expect
    None, ///< exactly the bytes of the text are stored
};

/// Stores a text (REG_SZ); makes the key when needed. False when the system refuses.
bool setRegistryText(HKEY hive, const std::string &key, const std::string &name,
                     const std::string &text, Ending ending);

} // namespace win32
