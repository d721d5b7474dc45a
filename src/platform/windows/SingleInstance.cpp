#include "platform/windows/SingleInstance.h"

#include "platform/windows/win32/DesktopWindows.h"
#include "platform/windows/win32/Retry.h"

namespace {

/// Our own names, which are plain letters.
std::wstring wide(const std::string &name)
{
    return {name.begin(), name.end()};
}

} // namespace

SingleInstance::SingleInstance(const std::string &program)
    : m_instance(wide(program))
{
}

bool SingleInstance::handOver(const std::string &, const std::string &caption)
{
    return win32::retried([&] { return win32::raiseWindow(wide(caption), {}); },
                          [](DWORD) { return true; });
}
