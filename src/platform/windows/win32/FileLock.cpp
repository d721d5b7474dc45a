#include "platform/windows/win32/FileLock.h"

#include "platform/windows/win32/Files.h"
#include "platform/windows/win32/Retry.h"

namespace win32 {

namespace {

/// False when it was removed after it was opened; another one may lie in its place.
bool isStillThere(HANDLE file)
{
    FILE_STANDARD_INFO info{};
    return GetFileInformationByHandleEx(file, FileStandardInfo, &info, sizeof(info))
           && !info.DeletePending && info.NumberOfLinks > 0;
}

bool lockLastByte(HANDLE file)
{
    OVERLAPPED place{};
    place.Offset = 0xFFFFFFFE; // nobody who reads the file meets the lock there
    place.OffsetHigh = 0x7FFFFFFF;
    if (LockFileEx(file, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place))
        return true;
    if (const DWORD code = GetLastError(); !meansBusy(code) && code != ERROR_IO_PENDING)
        raise(code);
    return false;
}

} // namespace

std::optional<Handle> lockFile(const std::wstring &path, std::chrono::milliseconds patience)
{
    const auto end = std::chrono::steady_clock::now() + patience;
    for (;;) {
        Handle file = openShared(path, GENERIC_READ | GENERIC_WRITE, OPEN_ALWAYS,
                                 FILE_FLAG_OPEN_REPARSE_POINT);
        // A lock file that is being deleted refuses to be opened until its last user is gone.
        if (!file.isOpen() && GetLastError() != ERROR_ACCESS_DENIED)
            raiseLast();
        if (file.isOpen() && status(path).kind == Kind::Link)
            raise(ERROR_CANT_ACCESS_FILE);
        if (file.isOpen() && lockLastByte(file.get()) && isStillThere(file.get()))
            return file;
        if (std::chrono::steady_clock::now() >= end) {
            if (!file.isOpen())
                raise(ERROR_ACCESS_DENIED);
            return std::nullopt;
        }
        Sleep(10);
    }
}

} // namespace win32
