#pragma once

#include "platform/windows/win32/Handle.h"

#include <cstdint>
#include <string>

namespace win32 {

struct ReplaceOptions
{
    bool flush = true;            ///< to the disk, before the name is taken
    bool throughReadOnly = false; ///< over a read-only file too, which stays read-only
};

/// New content for a file on its way into place: "<name>.qvtmp<process>" beside it, which goes when
/// it does not get there; then the target is as it was. Refuses, with ERROR_ACCESS_DENIED, a
/// read-only target, with ERROR_NOT_SUPPORTED one that is no regular file.
class Replacement final
{
public:
    Replacement(const std::wstring &target, ReplaceOptions options);
    Replacement(const Replacement &) = delete;
    Replacement &operator=(const Replacement &) = delete;
    ~Replacement();

    void write(std::int64_t offset, const char *bytes, std::int64_t count);
    void putInPlace();

private:
    void takeAccessRights();
    void rename();

    std::wstring m_target;
    std::wstring m_name;
    ReplaceOptions m_options;
    DWORD m_oldAttributes = INVALID_FILE_ATTRIBUTES; ///< of the target, when there is one
    Handle m_file;
    bool m_inPlace = false;
};

} // namespace win32
