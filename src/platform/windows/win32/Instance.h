#pragma once

#include "platform/windows/win32/Handle.h"

#include <string>

namespace win32 {

/// Whether the same program already runs in this session, by a named mutex that the system takes
/// back when its holder dies.
class Instance final
{
public:
    explicit Instance(const std::wstring &program);

    [[nodiscard]] bool isSecond() const { return m_isSecond; }

private:
    Handle m_mutex;
    bool m_isSecond = false;
};

} // namespace win32
