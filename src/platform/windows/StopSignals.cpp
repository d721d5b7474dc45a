#include "platform/windows/StopSignals.h"

#include "platform/windows/win32/Win32Error.h"

#include <atomic>

namespace {

std::atomic<std::stop_source *> asked = nullptr;

/// On a thread of the system's own.
BOOL WINAPI askToStop(DWORD event)
{
    std::stop_source *const stop = asked.exchange(nullptr);
    if (stop == nullptr)
        return FALSE; // the system ends the program
    stop->request_stop();
    // The console is closed: the system ends the program when this returns, or after some seconds.
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT)
        Sleep(INFINITE);
    return TRUE;
}

} // namespace

StopSignals::StopSignals()
{
    asked = &m_stop;
    SetConsoleCtrlHandler(askToStop, TRUE);
}

StopSignals::~StopSignals()
{
    SetConsoleCtrlHandler(askToStop, FALSE);
    asked = nullptr;
}
