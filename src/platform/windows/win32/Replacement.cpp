#include "platform/windows/win32/Replacement.h"

#include "platform/windows/win32/Files.h"
#include "platform/windows/win32/Retry.h"

#include <algorithm>
#include <vector>

namespace win32 {

namespace {

constexpr DWORD keptAttributes =
    FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE;

HANDLE createNew(const std::wstring &name)
{
    return CreateFileW(name.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_NEW,
                       FILE_ATTRIBUTE_NORMAL, nullptr);
}

/// A process that had our number may have been killed while it wrote.
HANDLE createAnew(const std::wstring &name)
{
    HANDLE file = createNew(name);
    if (file == INVALID_HANDLE_VALUE && GetLastError() == ERROR_FILE_EXISTS
        && status(name).kind == Kind::File && DeleteFileW(name.c_str()))
        file = createNew(name);
    return file;
}

/// Disks without access rights have none to copy.
bool meansNoRights(DWORD code)
{
    return code == ERROR_INVALID_FUNCTION || code == ERROR_NOT_SUPPORTED
           || code == ERROR_CALL_NOT_IMPLEMENTED;
}

} // namespace

Replacement::Replacement(const std::wstring &target, ReplaceOptions options)
    : m_target(longPath(target))
    , m_name(m_target + L".qvtmp" + std::to_wstring(GetCurrentProcessId()))
    , m_options(options)
{
    const Status old = status(target);
    if (old.kind == Kind::Folder || old.kind == Kind::Link)
        raise(old.kind == Kind::Link ? ERROR_CANT_ACCESS_FILE : ERROR_NOT_SUPPORTED);
    if (old.kind == Kind::File && old.isReadOnly() && !options.throughReadOnly)
        raise(ERROR_ACCESS_DENIED);
    m_file = Handle(createAnew(m_name));
    if (!m_file.isOpen())
        raiseLast();
    if (old.kind == Kind::File) {
        m_oldAttributes = old.attributes;
        try {
            takeAccessRights();
        } catch (...) { // the destructor does not run
            m_file.close();
            DeleteFileW(m_name.c_str());
            throw;
        }
    }
}

Replacement::~Replacement()
{
    m_file.close();
    if (!m_inPlace)
        DeleteFileW(m_name.c_str());
}

void Replacement::takeAccessRights()
{
    constexpr SECURITY_INFORMATION rights = DACL_SECURITY_INFORMATION;
    DWORD size = 0;
    GetFileSecurityW(m_target.c_str(), rights, nullptr, 0, &size);
    if (GetLastError() != ERROR_INSUFFICIENT_BUFFER) {
        if (!meansNoRights(GetLastError()))
            raiseLast();
        return;
    }
    std::vector<std::byte> description(size);
    if (!GetFileSecurityW(m_target.c_str(), rights, description.data(), size, &size)
        || !SetFileSecurityW(m_name.c_str(), rights, description.data()))
        if (!meansNoRights(GetLastError()))
            raiseLast();
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
    const bool hasOld = m_oldAttributes != INVALID_FILE_ATTRIBUTES;
    const bool isReadOnly = hasOld && (m_oldAttributes & FILE_ATTRIBUTE_READONLY) != 0;
    if (hasOld && (m_oldAttributes & keptAttributes) != 0
        && !SetFileAttributesW(m_name.c_str(), m_oldAttributes & keptAttributes))
        raiseLast();
    if (!isReadOnly)
        return rename();
    SetFileAttributesW(m_target.c_str(), m_oldAttributes & ~DWORD(FILE_ATTRIBUTE_READONLY));
    try {
        rename();
    } catch (...) {
        SetFileAttributesW(m_target.c_str(), m_oldAttributes);
        throw;
    }
    SetFileAttributesW(m_target.c_str(), m_oldAttributes);
}

void Replacement::rename()
{
    DWORD flags = MOVEFILE_REPLACE_EXISTING;
    if (m_options.flush)
        flags |= MOVEFILE_WRITE_THROUGH;
    // While somebody has the target open, the system says "access denied".
    const auto busy = [&](DWORD code) {
        return meansBusy(code)
               || (code == ERROR_ACCESS_DENIED && m_oldAttributes != INVALID_FILE_ATTRIBUTES);
    };
    if (!retried([&] { return MoveFileExW(m_name.c_str(), m_target.c_str(), flags) != 0; }, busy))
        raiseLast();
    m_inPlace = true;
}

} // namespace win32
