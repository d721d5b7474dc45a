#pragma once

#include "platform/windows/win32/Win32Error.h"

#include <chrono>

namespace win32 {

/// Virus scanners, indexers and other authors keep files open for moments.
[[nodiscard]] inline bool meansBusy(DWORD code)
{
    return code == ERROR_SHARING_VIOLATION || code == ERROR_LOCK_VIOLATION;
}

/// Where a name is looked for, changed or removed: what is open elsewhere, a folder with something
/// open in it and what is deleted but still open are "access denied" too.
[[nodiscard]] inline bool meansHeld(DWORD code)
{
    return meansBusy(code) || code == ERROR_ACCESS_DENIED || code == ERROR_DELETE_PENDING;
}

/// Calls until it succeeds, fails for another reason than `busy` names, or two seconds are over.
/// False leaves the reason in GetLastError.
template <typename Call, typename Busy>
bool retried(Call call, Busy busy)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(2);
    for (;;) {
        if (call())
            return true;
        const DWORD code = GetLastError();
        if (!busy(code) || std::chrono::steady_clock::now() >= end) {
            SetLastError(code);
            return false;
        }
        Sleep(20);
    }
}

template <typename Call>
bool retried(Call call)
{
    return retried(call, meansBusy);
}

} // namespace win32
