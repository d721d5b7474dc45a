#include "platform/windows/win32/FileChanges.h"

#include "platform/windows/win32/Files.h"
#include "platform/windows/win32/Retry.h"

#include <algorithm>

namespace win32 {

namespace {

/// What was deleted stays in its folder while it is open elsewhere.
bool holdsOnlyDeleted(const std::wstring &folder)
{
    const std::vector<Entry> held = entries(folder);
    return std::all_of(held.begin(), held.end(), [&](const Entry &entry) {
        const DWORD code = obstacleTo(folder + L'\\' + entry.name);
        return meansHeld(code) || meansMissing(code);
    });
}

void rename(const std::wstring &source, const std::wstring &target)
{
    const auto renamed = [&] {
        return MoveFileExW(source.c_str(), target.c_str(), MOVEFILE_WRITE_THROUGH) != 0;
    };
    if (!retried(renamed, meansHeld))
        raiseLast();
}

bool isSameText(const std::wstring &a, const std::wstring &b)
{
    return CompareStringOrdinal(a.data(), int(a.size()), b.data(), int(b.size()), TRUE)
           == CSTR_EQUAL;
}

bool isInside(const std::wstring &path, const std::wstring &folder)
{
    return path.size() > folder.size() && path[folder.size()] == L'\\'
           && isSameText(path.substr(0, folder.size()), folder);
}

/// Some shares keep the old capitals otherwise.
void renameByWay(const std::wstring &source, const std::wstring &target)
{
    // No name that the removal of leftovers knows: it is the file itself.
    const std::wstring between = target + L".qvname" + std::to_wstring(GetCurrentProcessId());
    rename(source, between);
    try {
        rename(between, target);
    } catch (...) {
        rename(between, source);
        throw;
    }
}

bool storeAttributes(const std::wstring &path, DWORD attributes)
{
    return SetFileAttributesW(path.c_str(), attributes != 0 ? attributes : FILE_ATTRIBUTE_NORMAL)
           != 0;
}

void clearReadOnly(const std::wstring &path, DWORD attributes)
{
    if ((attributes & FILE_ATTRIBUTE_READONLY) != 0)
        storeAttributes(path, attributes & ~DWORD(FILE_ATTRIBUTE_READONLY));
}

} // namespace

void copyFile(const std::wstring &from, const std::wstring &to)
{
    requireFile(from);
    const std::wstring source = longPath(from);
    const std::wstring target = longPath(to);
    if (!retried([&] { return CopyFileW(source.c_str(), target.c_str(), TRUE) != 0; }))
        raiseLast();
}

void makeFolder(const std::wstring &path)
{
    if (!CreateDirectoryW(longPath(path).c_str(), nullptr))
        raiseLast();
}

void move(const std::wstring &from, const std::wstring &to)
{
    const std::wstring source = longPath(from);
    const std::wstring target = longPath(to);
    if (isInside(target, source)) // "access denied", as if one should wait
        raise(ERROR_INVALID_PARAMETER);
    const bool onlyCapitals = isSameText(source, target);
    if (onlyCapitals && asOnDisk(target) == target)
        raise(ERROR_ALREADY_EXISTS);
    rename(source, target);
    if (onlyCapitals && asOnDisk(target) != target)
        renameByWay(source, target);
}

void removeFile(const std::wstring &path)
{
    const std::wstring place = longPath(path);
    const Status found = status(path);
    clearReadOnly(place, found.attributes);
    const bool isFolder = (found.attributes & FILE_ATTRIBUTE_DIRECTORY) != 0; // a junction
    const auto remove = [&] {
        return (isFolder ? RemoveDirectoryW(place.c_str()) : DeleteFileW(place.c_str())) != 0;
    };
    if (retried(remove, meansHeld))
        return;
    const DWORD code = GetLastError();
    if (found.isReadOnly())
        storeAttributes(place, found.attributes);
    raise(code);
}

void removeFolder(const std::wstring &path)
{
    const std::wstring place = longPath(path);
    clearReadOnly(place, status(path).attributes);
    const auto busy = [&](DWORD code) {
        return meansHeld(code) || (code == ERROR_DIR_NOT_EMPTY && holdsOnlyDeleted(path));
    };
    if (!retried([&] { return RemoveDirectoryW(place.c_str()) != 0; }, busy))
        raiseLast();
}

void setAttributes(const std::wstring &path, DWORD attributes)
{
    const Status found = status(path);
    if (found.kind == Kind::Link)
        raise(ERROR_CANT_ACCESS_FILE);
    if (found.kind == Kind::Missing)
        raise(ERROR_FILE_NOT_FOUND);
    constexpr DWORD given = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM
                            | FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_NORMAL;
    if (!storeAttributes(longPath(path), attributes | (found.attributes & ~given)))
        raiseLast();
}

void flushFile(const std::wstring &path)
{
    const Status found = status(path);
    if (found.kind != Kind::File)
        return;
    const std::wstring place = longPath(path);
    clearReadOnly(place, found.attributes); // nobody may flush it else
    const Handle file = openShared(path, GENERIC_WRITE, OPEN_EXISTING);
    const DWORD code = GetLastError();
    if (found.isReadOnly() && !storeAttributes(place, found.attributes))
        raiseLast();
    if (!file.isOpen())
        raise(code);
    if (!FlushFileBuffers(file.get()))
        raiseLast();
}

void flushFolder(const std::wstring &path)
{
    if (status(path).kind != Kind::Folder)
        raise(ERROR_PATH_NOT_FOUND);
    const Handle folder(CreateFileW(longPath(path).c_str(), GENERIC_WRITE, shareAll, nullptr,
                                    OPEN_EXISTING, linkItself, nullptr));
    if (folder.isOpen())
        FlushFileBuffers(folder.get());
}

} // namespace win32
