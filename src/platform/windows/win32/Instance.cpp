#include "platform/windows/win32/Instance.h"

namespace win32 {

Instance::Instance(const std::wstring &program)
    : m_mutex(CreateMutexW(nullptr, FALSE, (L"Local\\Quovane." + program).c_str()))
    , m_isSecond(m_mutex.isOpen() && GetLastError() == ERROR_ALREADY_EXISTS)
{
}

} // namespace win32
