#pragma once

#include "platform/windows/win32/Win32Error.h"

#include <utility>

namespace win32 {

// How files are opened: nobody is kept out, links stand for themselves, folders are files too.
inline constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
inline constexpr DWORD linkItself = FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT;

/// Owns a handle of the system; invalid after a failed call.
class Handle final
{
public:
    Handle() = default;
    explicit Handle(HANDLE handle)
        : m_handle(handle == INVALID_HANDLE_VALUE ? nullptr : handle)
    {
    }
    Handle(Handle &&other) noexcept
        : m_handle(std::exchange(other.m_handle, nullptr))
    {
    }
    Handle &operator=(Handle &&other) noexcept
    {
        std::swap(m_handle, other.m_handle);
        return *this;
    }
    ~Handle() { close(); }

    [[nodiscard]] bool isOpen() const { return m_handle != nullptr; }
    [[nodiscard]] HANDLE get() const { return m_handle; }
    /// False when the system could not finish what was pending.
    bool close() { return !isOpen() || CloseHandle(std::exchange(m_handle, nullptr)) != 0; }

private:
    HANDLE m_handle = nullptr;
};

} // namespace win32
