#include "platform/windows/win32/Replacement.h"

#include "platform/windows/win32/Files.h"
#include "platform/windows/win32/Retry.h"

#include <algorithm>
#include <vector>

namespace win32 {

namespace {

constexpr SECURITY_INFORMATION accessRights = DACL_SECURITY_INFORMATION;
constexpr size_t longestName = 255;

using Rights = std::vector<std::byte>;

/// "<name>.qvtmp<number>", the name cut at a whole character where it would be too long.
std::wstring temporaryName(const std::wstring &target, DWORD number)
{
    const std::wstring ending = L".qvtmp" + std::to_wstring(number);
    const size_t begin = target.rfind(L'\\') + 1;
    std::wstring name = target.substr(begin, longestName - ending.size());
    if (!name.empty() && IS_HIGH_SURROGATE(name.back()))
        name.pop_back();
    return target.substr(0, begin) + name + ending;
}

/// Disks without access rights have none to copy.
bool meansNoRights(DWORD code)
{
    return code == ERROR_INVALID_FUNCTION || code == ERROR_NOT_SUPPORTED
           || code == ERROR_CALL_NOT_IMPLEMENTED;
}

/// Empty on a disk that has none.
Rights rightsOf(const std::wstring &path)
{
    constexpr DWORD usually = 1024; // bytes; each look at a file on a share takes a while
    Rights rights(usually);
    DWORD size = 0;
    const auto read = [&] {
        return GetFileSecurityW(path.c_str(), accessRights, rights.data(), DWORD(rights.size()),
                                &size)
               != 0;
    };
    bool isRead = read();
    if (!isRead && GetLastError() == ERROR_INSUFFICIENT_BUFFER) {
        rights.resize(size);
        isRead = read();
    }
    if (!isRead && !meansNoRights(GetLastError()))
        raiseLast();
    rights.resize(isRead ? GetSecurityDescriptorLength(rights.data()) : 0);
    return rights;
}

SECURITY_DESCRIPTOR_CONTROL controlOf(Rights &rights)
{
    SECURITY_DESCRIPTOR_CONTROL control = 0;
    DWORD revision = 0;
    if (!GetSecurityDescriptorControl(rights.data(), &control, &revision))
        raiseLast();
    return control;
}

/// Whether somebody gave this very file rights, beside those that its folder hands down.
bool areItsOwn(Rights &rights)
{
    BOOL isThere = FALSE;
    BOOL isDefault = FALSE;
    ACL *list = nullptr;
    if (!GetSecurityDescriptorDacl(rights.data(), &isThere, &list, &isDefault))
        raiseLast();
    bool anyOwn = (controlOf(rights) & SE_DACL_PROTECTED) != 0;
    for (DWORD at = 0; list != nullptr && at < list->AceCount; ++at) {
        void *entry = nullptr;
        if (!GetAce(list, at, &entry))
            raiseLast();
        anyOwn = anyOwn || (static_cast<ACE_HEADER *>(entry)->AceFlags & INHERITED_ACE) == 0;
    }
    return anyOwn;
}

} // namespace

Replacement::Replacement(const std::wstring &target, ReplaceOptions options)
    : m_target(longPath(target))
    , m_options(options)
{
    const Status old = status(target);
    if (old.kind == Kind::Folder || old.kind == Kind::Link)
        raise(old.kind == Kind::Link ? ERROR_CANT_ACCESS_FILE : ERROR_NOT_SUPPORTED);
    if (old.kind == Kind::File && old.isReadOnly() && !options.throughReadOnly)
        raise(ERROR_ACCESS_DENIED);
    if (old.kind == Kind::Missing) {
        create(FILE_ATTRIBUTE_NORMAL);
        return;
    }
    m_target = asOnDisk(m_target);
    m_oldAttributes = old.attributes;
    const DWORD encrypted = old.attributes & FILE_ATTRIBUTE_ENCRYPTED;
    create(encrypted != 0 ? encrypted : FILE_ATTRIBUTE_NORMAL);
    try {
        takeAccessRights();
    } catch (...) { // the destructor does not run
        remove();
        throw;
    }
}

Replacement::~Replacement()
{
    if (!m_inPlace)
        remove();
}

// A file that is there is never taken: on a shared disk it may be that of another machine's process
// with our number, or another thread's.
void Replacement::create(DWORD attributes)
{
    constexpr DWORD attempts = 1000;
    for (DWORD number = GetCurrentProcessId(), last = number + attempts; number < last; ++number) {
        m_name = temporaryName(m_target, number);
        m_file = Handle(CreateFileW(m_name.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                    CREATE_NEW, attributes, nullptr));
        if (m_file.isOpen())
            return;
        if (GetLastError() != ERROR_FILE_EXISTS)
            raiseLast();
    }
    raise(ERROR_FILE_EXISTS);
}

void Replacement::takeAccessRights()
{
    m_firstRights = rightsOf(m_name);
    Rights old = rightsOf(m_target);
    if (old.empty() || old == m_firstRights)
        return;
    if ((controlOf(old) & SE_DACL_AUTO_INHERITED) != 0) // the system forgets else that they are
        SetSecurityDescriptorControl(old.data(), SE_DACL_AUTO_INHERIT_REQ,
                                     SE_DACL_AUTO_INHERIT_REQ);
    if (SetFileSecurityW(m_name.c_str(), accessRights, old.data()) || meansNoRights(GetLastError()))
        return;
    // Most shares let authors change files but no rights: then the folder's are what it takes.
    const DWORD code = GetLastError();
    if (areItsOwn(old))
        raise(code);
}

void Replacement::write(std::int64_t offset, const char *bytes, std::int64_t count)
{
    while (count > 0) {
        OVERLAPPED place{};
        place.Offset = DWORD(offset & 0xFFFFFFFF);
        place.OffsetHigh = DWORD(offset >> 32);
        DWORD written = 0;
        const auto wanted = DWORD(std::min<std::int64_t>(count, 1 << 30));
        if (!WriteFile(m_file.get(), bytes, wanted, &written, &place))
            raiseLast();
        if (written == 0)
            raise(ERROR_DISK_FULL);
        bytes += written;
        offset += written;
        count -= written;
    }
}

void Replacement::putInPlace()
{
    if (m_options.flush && !FlushFileBuffers(m_file.get()))
        raiseLast();
    if (!m_file.close())
        raiseLast();
    if (m_oldAttributes == INVALID_FILE_ATTRIBUTES)
        return rename();
    keepHidden();
    if ((m_oldAttributes & FILE_ATTRIBUTE_READONLY) != 0)
        return renameOverReadOnly();
    rename();
}

void Replacement::keepHidden()
{
    const DWORD kept = m_oldAttributes & (FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
    if (kept != 0 && !SetFileAttributesW(m_name.c_str(), kept | FILE_ATTRIBUTE_ARCHIVE))
        raiseLast();
}

void Replacement::renameOverReadOnly()
{
    const DWORD writable = m_oldAttributes & ~DWORD(FILE_ATTRIBUTE_READONLY);
    SetFileAttributesW(m_target.c_str(), writable | FILE_ATTRIBUTE_ARCHIVE);
    try {
        rename();
    } catch (...) {
        SetFileAttributesW(m_target.c_str(), m_oldAttributes);
        throw;
    }
    if (!SetFileAttributesW(m_target.c_str(), m_oldAttributes | FILE_ATTRIBUTE_ARCHIVE))
        raiseLast();
}

void Replacement::rename()
{
    DWORD flags = MOVEFILE_REPLACE_EXISTING;
    if (m_options.flush)
        flags |= MOVEFILE_WRITE_THROUGH;
    const auto renamed = [&] { return MoveFileExW(m_name.c_str(), m_target.c_str(), flags) != 0; };
    if (!retried(renamed, meansHeld)) {
        const DWORD code = GetLastError();
        const DWORD obstacle = obstacleTo(m_target);
        raise(meansBusy(obstacle) ? obstacle : code); // that says who is in the way
    }
    m_inPlace = true;
}

void Replacement::remove()
{
    m_file.close();
    if (retried([&] { return DeleteFileW(m_name.c_str()) != 0; }) || m_firstRights.empty())
        return;
    // The old file's rights may let nobody delete.
    SetFileSecurityW(m_name.c_str(), accessRights, m_firstRights.data());
    DeleteFileW(m_name.c_str());
}

} // namespace win32
