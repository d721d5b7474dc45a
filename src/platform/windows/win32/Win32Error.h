#pragma once

#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>

#include <string>

namespace win32 {

/// What a system call ended with: one of the ERROR_ numbers.
struct Error
{
    DWORD code = ERROR_SUCCESS;
};

[[noreturn]] void raise(DWORD code);
[[noreturn]] void raiseLast();

/// True when the system says that a file or its folder is not there.
[[nodiscard]] bool meansMissing(DWORD code);

/// The system's words in English where it has them, else "Error <number>"; no line end, no dot.
[[nodiscard]] std::wstring describe(DWORD code);

} // namespace win32
