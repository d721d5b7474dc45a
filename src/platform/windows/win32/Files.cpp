#include "platform/windows/win32/Files.h"

#include "platform/windows/win32/Retry.h"

#include <algorithm>
#include <optional>

namespace win32 {

namespace {

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

/// As the folder has it; nothing when that cannot be read, or does not have it.
std::optional<std::wstring> listedName(const std::wstring &path)
{
    WIN32_FIND_DATAW found{};
    const HANDLE search = FindFirstFileW(longPath(path).c_str(), &found);
    if (search == INVALID_HANDLE_VALUE)
        return std::nullopt;
    FindClose(search);
    return found.cFileName;
}

/// What is deleted but still open stays listed; what one may not see at all is not waited for.
bool isHeld(DWORD code, const std::wstring &path)
{
    return meansBusy(code) || (meansHeld(code) && listedName(path));
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

} // namespace

std::wstring longPath(const std::wstring &path)
{
    if (path.starts_with(L"\\\\?\\"))
        return path;
    return path.starts_with(L"\\\\") ? L"\\\\?\\UNC\\" + path.substr(2) : L"\\\\?\\" + path;
}

std::wstring asOnDisk(const std::wstring &path)
{
    const auto name = listedName(path);
    return name ? path.substr(0, path.rfind(L'\\') + 1) + *name : path;
}

DWORD obstacleTo(const std::wstring &path)
{
    const Handle file(CreateFileW(longPath(path).c_str(), DELETE, 0, nullptr, OPEN_EXISTING,
                                  linkItself, nullptr));
    return file.isOpen() ? ERROR_SUCCESS : GetLastError();
}

Status status(const std::wstring &path)
{
    const std::wstring place = longPath(path);
    WIN32_FILE_ATTRIBUTE_DATA found{};
    const bool isThere = retried(
        [&] { return GetFileAttributesExW(place.c_str(), GetFileExInfoStandard, &found) != 0; },
        [&](DWORD code) { return isHeld(code, place); });
    if (!isThere && meansMissing(GetLastError()))
        return {};
    if (!isThere)
        raiseLast();
    const bool isTagged = (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    return statusOf(found, isTagged ? tagOf(place) : 0);
}

std::vector<Entry> entries(const std::wstring &folder)
{
    const Kind kind = status(folder).kind;
    if (kind == Kind::Link)
        raise(ERROR_CANT_ACCESS_FILE);
    const std::wstring all = longPath(folder) + (folder.ends_with(L'\\') ? L"*" : L"\\*");
    WIN32_FIND_DATAW found{};
    HANDLE search = INVALID_HANDLE_VALUE;
    const auto begin = [&] {
        search = FindFirstFileExW(all.c_str(), FindExInfoBasic, &found, FindExSearchNameMatch,
                                  nullptr, FIND_FIRST_EX_LARGE_FETCH);
        return search != INVALID_HANDLE_VALUE;
    };
    const bool isOpen = retried(begin, [&](DWORD code) { return isHeld(code, folder); });
    if (!isOpen && GetLastError() == ERROR_FILE_NOT_FOUND && kind == Kind::Folder)
        return {}; // a new drive: its root has not even "." in it
    if (!isOpen)
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

void requireFile(const std::wstring &path)
{
    switch (status(path).kind) {
    case Kind::File:
        break;
    case Kind::Missing:
        raise(ERROR_FILE_NOT_FOUND);
    case Kind::Link:
        raise(ERROR_CANT_ACCESS_FILE);
    case Kind::Folder:
        raise(ERROR_NOT_SUPPORTED);
    }
}

Handle openShared(const std::wstring &path, DWORD access, DWORD disposition, DWORD flags)
{
    const std::wstring place = longPath(path);
    HANDLE file = INVALID_HANDLE_VALUE;
    retried([&] {
        file = CreateFileW(place.c_str(), access, shareAll, nullptr, disposition, flags, nullptr);
        return file != INVALID_HANDLE_VALUE;
    });
    return Handle(file);
}

// Opened as the disk means it, not as a reparse point: the bytes of a deduplicated file, or of one
// in the cloud, lie behind it.
Handle openToRead(const std::wstring &path, std::int64_t &size)
{
    requireFile(path);
    Handle file = openShared(path, GENERIC_READ, OPEN_EXISTING);
    if (!file.isOpen())
        raiseLast();
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

} // namespace win32
