#pragma once

#include "platform/windows/win32/Handle.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace win32 {

struct ReplaceOptions
{
    bool flush = true;            ///< to the disk, before the name is taken
    bool throughReadOnly = false; ///< over a read-only file too, which stays read-only
};

/// New content for a file on its way into place: "<name>.qvtmp<number>" beside it, which goes when
/// it does not get there; then the target is as it was. What is in place keeps the name as it is
/// spelled on the disk, attributes and access rights; it is to be archived again.
/// Refuses a read-only target with ERROR_ACCESS_DENIED, a link with ERROR_CANT_ACCESS_FILE and a
/// folder with ERROR_NOT_SUPPORTED.
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
    void create(DWORD attributes);
    void takeAccessRights();
    void keepHidden();
    void renameOverReadOnly();
    void rename();
    void remove();

    std::wstring m_target;
    std::wstring m_name;
    ReplaceOptions m_options;
    DWORD m_oldAttributes = INVALID_FILE_ATTRIBUTES; ///< of the target, when there is one
    std::vector<std::byte> m_firstRights;            ///< what the folder gave
    Handle m_file;
    bool m_inPlace = false;
};

} // namespace win32
