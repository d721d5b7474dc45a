#include "platform/windows/win32/Files.h"

#include "platform/windows/win32/Retry.h"

#include <algorithm>

namespace win32 {

namespace {

constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr DWORD linkItself = FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT;

/// Whether what the tag stands for lies in another place; clouds and deduplicated disks use tags
/// for files that are here.
bool isLink(DWORD attributes, DWORD tag)
{
    return (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 && IsReparseTagNameSurrogate(tag);
}

std::int64_t millisecondsOf(FILETIME time)
{
    constexpr std::int64_t until1970 = 11'644'473'600'000;
    const std::int64_t ticks =
        (std::int64_t(time.dwHighDateTime) << 32) | std::int64_t(time.dwLowDateTime);
    return ticks / 10'000 - until1970;
}

template <typename Found>
Status statusOf(const Found &found, DWORD tag)
{
    Status result;
    result.attributes = found.dwFileAttributes;
    result.modified = millisecondsOf(found.ftLastWriteTime);
    if (isLink(found.dwFileAttributes, tag))
        result.kind = Kind::Link;
    else if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
        result.kind = Kind::Folder;
    else {
        result.kind = Kind::File;
        result.size = (std::int64_t(found.nFileSizeHigh) << 32) | std::int64_t(found.nFileSizeLow);
    }
    return result;
}

DWORD tagOf(const std::wstring &path)
{
    const Handle file(CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES, shareAll, nullptr,
                                  OPEN_EXISTING, linkItself, nullptr));
    FILE_ATTRIBUTE_TAG_INFO info{};
    if (!file.isOpen()
        || !GetFileInformationByHandleEx(file.get(), FileAttributeTagInfo, &info, sizeof(info)))
        raiseLast();
    return info.ReparseTag;
}

bool isDots(const wchar_t *name)
{
    return name[0] == L'.' && (name[1] == 0 || (name[1] == L'.' && name[2] == 0));
}

struct CloseSearch
{
    HANDLE search;
    ~CloseSearch() { FindClose(search); }
};

Handle openToLock(const std::wstring &path)
{
    HANDLE file = INVALID_HANDLE_VALUE;
    retried([&] {
        file =
            CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, shareAll, nullptr, OPEN_ALWAYS,
                        FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
        return file != INVALID_HANDLE_VALUE;
    });
    return Handle(file);
}

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
    return LockFileEx(file, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place);
}

void rename(const std::wstring &source, const std::wstring &target)
{
    if (!retried([&] {
            return MoveFileExW(source.c_str(), target.c_str(), MOVEFILE_WRITE_THROUGH) != 0;
        }))
        raiseLast();
}

bool isSameText(const std::wstring &a, const std::wstring &b)
{
    return CompareStringOrdinal(a.data(), int(a.size()), b.data(), int(b.size()), TRUE)
           == CSTR_EQUAL;
}

/// Whether the disk has the file under these very capitals.
bool isCalledSo(const std::wstring &path)
{
    WIN32_FIND_DATAW found{};
    const HANDLE search = FindFirstFileW(path.c_str(), &found);
    if (search == INVALID_HANDLE_VALUE)
        return true;
    FindClose(search);
    return path.ends_with(std::wstring_view(found.cFileName));
}

void clearReadOnly(const std::wstring &path, DWORD attributes)
{
    if ((attributes & FILE_ATTRIBUTE_READONLY) != 0)
        SetFileAttributesW(path.c_str(), attributes & ~DWORD(FILE_ATTRIBUTE_READONLY));
}

} // namespace

std::wstring longPath(const std::wstring &path)
{
    if (path.starts_with(L"\\\\?\\"))
        return path;
    return path.starts_with(L"\\\\") ? L"\\\\?\\UNC\\" + path.substr(2) : L"\\\\?\\" + path;
}

Status status(const std::wstring &path)
{
    const std::wstring place = longPath(path);
    WIN32_FILE_ATTRIBUTE_DATA found{};
    const bool isThere = retried(
        [&] { return GetFileAttributesExW(place.c_str(), GetFileExInfoStandard, &found) != 0; });
    if (!isThere && meansMissing(GetLastError()))
        return {};
    if (!isThere)
        raiseLast();
    const bool isTagged = (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    return statusOf(found, isTagged ? tagOf(place) : 0);
}

std::vector<Entry> entries(const std::wstring &folder)
{
    if (status(folder).kind == Kind::Link)
        raise(ERROR_CANT_ACCESS_FILE);
    WIN32_FIND_DATAW found{};
    const HANDLE search =
        FindFirstFileExW((longPath(folder) + L"\\*").c_str(), FindExInfoBasic, &found,
                         FindExSearchNameMatch, nullptr, FIND_FIRST_EX_LARGE_FETCH);
    if (search == INVALID_HANDLE_VALUE)
        raiseLast();
    const CloseSearch closed{search};
    std::vector<Entry> result;
    do {
        if (!isDots(found.cFileName))
            result.push_back({found.cFileName, statusOf(found, found.dwReserved0)});
    } while (FindNextFileW(search, &found));
    if (GetLastError() != ERROR_NO_MORE_FILES)
        raiseLast();
    std::sort(result.begin(), result.end(),
              [](const Entry &a, const Entry &b) { return a.name < b.name; });
    return result;
}

// Opened as the disk means it, not as a reparse point: the bytes of a deduplicated file, or of one
// in the cloud, lie behind it.
Handle openToRead(const std::wstring &path, std::int64_t &size)
{
    if (const Kind kind = status(path).kind; kind != Kind::File)
        raise(kind == Kind::Missing ? ERROR_FILE_NOT_FOUND : ERROR_NOT_SUPPORTED);
    const std::wstring place = longPath(path);
    HANDLE opened = INVALID_HANDLE_VALUE;
    const bool isOpen = retried([&] {
        opened =
            CreateFileW(place.c_str(), GENERIC_READ, shareAll, nullptr, OPEN_EXISTING, 0, nullptr);
        return opened != INVALID_HANDLE_VALUE;
    });
    if (!isOpen)
        raiseLast();
    Handle file(opened);
    LARGE_INTEGER bytes{};
    if (!GetFileSizeEx(file.get(), &bytes))
        raiseLast();
    size = bytes.QuadPart;
    return file;
}

std::int64_t readAt(HANDLE file, std::int64_t offset, char *to, std::int64_t count)
{
    std::int64_t done = 0;
    while (done < count) {
        const std::int64_t at = offset + done;
        OVERLAPPED place{};
        place.Offset = DWORD(at & 0xFFFFFFFF);
        place.OffsetHigh = DWORD(at >> 32);
        const auto wanted = DWORD(std::min<std::int64_t>(count - done, 1 << 30));
        DWORD got = 0;
        if (!ReadFile(file, to + done, wanted, &got, &place)) {
            if (GetLastError() == ERROR_HANDLE_EOF)
                break;
            raiseLast();
        }
        if (got == 0)
            break;
        done += got;
    }
    return done;
}

void copyFile(const std::wstring &from, const std::wstring &to)
{
    if (const Kind kind = status(from).kind; kind != Kind::File)
        raise(kind == Kind::Missing ? ERROR_FILE_NOT_FOUND : ERROR_NOT_SUPPORTED);
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
    rename(source, target);
    if (!isSameText(source, target) || isCalledSo(target))
        return;
    std::wstring between = target;
    between.append(L".qvtmp").append(std::to_wstring(GetCurrentProcessId()));
    rename(source, between); // some shares keep the old capitals otherwise
    rename(between, target);
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
    if (retried(remove))
        return;
    const DWORD code = GetLastError();
    if (found.isReadOnly())
        SetFileAttributesW(place.c_str(), found.attributes);
    raise(code);
}

void removeFolder(const std::wstring &path)
{
    const std::wstring place = longPath(path);
    clearReadOnly(place, status(path).attributes);
    // What was just deleted in it may still be open elsewhere for a moment.
    const auto busy = [](DWORD code) { return meansBusy(code) || code == ERROR_DIR_NOT_EMPTY; };
    const bool isGone = [&] {
        if (RemoveDirectoryW(place.c_str()))
            return true;
        if (GetLastError() == ERROR_DIR_NOT_EMPTY && !entries(path).empty()) {
            SetLastError(ERROR_DIR_NOT_EMPTY);
            return false;
        }
        return retried([&] { return RemoveDirectoryW(place.c_str()) != 0; }, busy);
    }();
    if (!isGone)
        raiseLast();
}

void setAttributes(const std::wstring &path, DWORD attributes)
{
    const Status found = status(path);
    if (found.kind == Kind::Link)
        raise(ERROR_CANT_ACCESS_FILE);
    if (found.kind == Kind::Missing)
        raise(ERROR_FILE_NOT_FOUND);
    const DWORD wanted = attributes != 0 ? attributes : DWORD(FILE_ATTRIBUTE_NORMAL);
    if (!SetFileAttributesW(longPath(path).c_str(), wanted))
        raiseLast();
}

void flushFile(const std::wstring &path)
{
    const Status found = status(path);
    if (found.kind != Kind::File || found.isReadOnly())
        return;
    const std::wstring place = longPath(path);
    HANDLE opened = INVALID_HANDLE_VALUE;
    if (!retried([&] {
            opened = CreateFileW(place.c_str(), GENERIC_WRITE, shareAll, nullptr, OPEN_EXISTING, 0,
                                 nullptr);
            return opened != INVALID_HANDLE_VALUE;
        }))
        raiseLast();
    const Handle file(opened);
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

std::optional<Handle> lockFile(const std::wstring &path, std::chrono::milliseconds patience)
{
    const std::wstring place = longPath(path);
    const auto end = std::chrono::steady_clock::now() + patience;
    for (;;) {
        Handle file = openToLock(place);
        // A lock file that is being deleted refuses to be opened until its last user is gone.
        if (!file.isOpen() && GetLastError() != ERROR_ACCESS_DENIED)
            raiseLast();
        if (file.isOpen() && status(path).kind != Kind::File)
            raise(ERROR_NOT_SUPPORTED);
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
