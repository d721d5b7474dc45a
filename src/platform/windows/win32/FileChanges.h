#pragma once

#include "platform/windows/win32/Win32Error.h"

#include <string>

// What is done to files of Windows as a whole, under the paths of Files.h and with its patience.

namespace win32 {

/// One regular file with its times and attributes to a name that is not taken.
void copyFile(const std::wstring &from, const std::wstring &to);
void makeFolder(const std::wstring &path);
/// To a name that is not taken, unless only capitals change. Comes back when it is on the disk.
void move(const std::wstring &from, const std::wstring &to);
/// A file or a link, read-only or not.
void removeFile(const std::wstring &path);
void removeFolder(const std::wstring &path);
/// Read-only, hidden, system and archive as given; what else the disk notes stays.
void setAttributes(const std::wstring &path, DWORD attributes);

/// Flushes a file to the disk, a read-only one too.
void flushFile(const std::wstring &path);
/// The same for a folder's list of names, where the disk takes such an order.
void flushFolder(const std::wstring &path);

} // namespace win32
