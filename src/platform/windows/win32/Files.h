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

[[nodiscard]] Status status(const std::wstring &path);
/// In the order of names.
[[nodiscard]] std::vector<Entry> entries(const std::wstring &folder);

/// A regular file, for reading; ERROR_NOT_SUPPORTED for what is none.
[[nodiscard]] Handle openToRead(const std::wstring &path, std::int64_t &size);
/// Copies what lies at `offset`; less than `count` bytes only at the end.
std::int64_t readAt(HANDLE file, std::int64_t offset, char *to, std::int64_t count);

/// One regular file with its times and attributes to a name that is not taken.
void copyFile(const std::wstring &from, const std::wstring &to);
void makeFolder(const std::wstring &path);
/// To a name that is not taken, unless only capitals change. Comes back when it is on the disk.
void move(const std::wstring &from, const std::wstring &to);
/// A file or a link, read-only or not.
void removeFile(const std::wstring &path);
void removeFolder(const std::wstring &path);
void setAttributes(const std::wstring &path, DWORD attributes);

/// Flushes a file to the disk. Read-only ones are left to the system, which lets nobody flush them.
void flushFile(const std::wstring &path);
/// The same for a folder's list of names, where the disk takes such an order.
void flushFolder(const std::wstring &path);

/// Locks a byte behind the end of the file, which is made when missing. Nothing when another handle
/// held it all the time. The lock goes with the handle.
[[nodiscard]] std::optional<Handle> lockFile(const std::wstring &path,
                                             std::chrono::milliseconds patience);

} // namespace win32
