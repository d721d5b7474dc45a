#pragma once

#include "platform/windows/win32/Handle.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// The files of Windows. Paths are full ones, "C:\x\y" or "\\server\share\x", of any length.
// What fails raises Error; what another program keeps open for a moment is tried for two seconds.

namespace win32 {

/// Links are what stands for another place: junctions, symbolic links. They are never followed.
enum class Kind { Missing, File, Folder, Link };

struct Status
{
    Kind kind = Kind::Missing;
    std::int64_t size = 0;
    std::int64_t modified = 0; ///< milliseconds since 1970, UTC
    DWORD attributes = 0;

    [[nodiscard]] bool isReadOnly() const { return (attributes & FILE_ATTRIBUTE_READONLY) != 0; }
};

struct Entry
{
    std::wstring name;
    Status status;
};

/// The form that takes 32,767 characters and is passed to the disk as it stands.
[[nodiscard]] std::wstring longPath(const std::wstring &path);

/// The path with its last name spelled as on the disk, when it is there.
[[nodiscard]] std::wstring asOnDisk(const std::wstring &path);

/// Why a file, folder or link could not be renamed or deleted now; ERROR_SUCCESS when it could.
[[nodiscard]] DWORD obstacleTo(const std::wstring &path);

[[nodiscard]] Status status(const std::wstring &path);
/// In the order of names.
[[nodiscard]] std::vector<Entry> entries(const std::wstring &folder);

/// A regular file, for reading; ERROR_NOT_SUPPORTED for what is none.
[[nodiscard]] Handle openToRead(const std::wstring &path, std::int64_t &size);
/// Copies what lies at `offset`; less than `count` bytes only at the end.
std::int64_t readAt(HANDLE file, std::int64_t offset, char *to, std::int64_t count);

/// Locks a byte behind the end of the file, which is made when missing. Nothing when another handle
/// held it all the time. The lock goes with the handle. Raises where the disk has no locks.
[[nodiscard]] std::optional<Handle> lockFile(const std::wstring &path,
                                             std::chrono::milliseconds patience);

} // namespace win32
