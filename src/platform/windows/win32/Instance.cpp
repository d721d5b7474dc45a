#include "platform/windows/win32/Instance.h"

namespace win32 {

Instance::Instance(const std::wstring &program)
    : m_mutex(CreateMutexW(nullptr, FALSE, (L"Local\\Quovane." + program).c_str()))
    // Denied is the mutex of one that runs with other rights, such as an administrator's.
    , m_isSecond(GetLastError() == (m_mutex.isOpen() ? ERROR_ALREADY_EXISTS : ERROR_ACCESS_DENIED))
{
}

} // namespace win32
