#pragma once

#include "platform/windows/win32/Handle.h"

#include <cstdint>
#include <string>
#include <vector>

// Looking at the files of Windows, and reading them. Paths are full ones, "C:\x\y" or
// "\\server\share\x", of any length.
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

/// Raises ERROR_FILE_NOT_FOUND, ERROR_CANT_ACCESS_FILE for a link, ERROR_NOT_SUPPORTED for a
/// folder.
void requireFile(const std::wstring &path);

/// In the order of names.
[[nodiscard]] std::vector<Entry> entries(const std::wstring &folder);

/// Opens a file without keeping anybody out. Not open, with GetLastError, when that fails.
[[nodiscard]] Handle openShared(const std::wstring &path, DWORD access, DWORD disposition,
                                DWORD flags = 0);

/// Opens a regular file, and says how many bytes it has. Raises as `requireFile` for anything else.
[[nodiscard]] Handle openToRead(const std::wstring &path, std::int64_t &size);
/// Copies what lies at `offset`; less than `count` bytes only at the end.
std::int64_t readAt(HANDLE file, std::int64_t offset, char *to, std::int64_t count);

} // namespace win32
