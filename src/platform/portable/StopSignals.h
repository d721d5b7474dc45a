#pragma once

#include "platform/portable/Descriptor.h"

#include <stop_token>
#include <thread>

/// Ctrl+C, and a polite request to end, as the Stop of a program without windows. Asked a second
/// time the program ends at once. There is one of these at a time.
class StopSignals final
{
public:
    /// Raises 75 when the system has no pipe left.
    StopSignals();
    StopSignals(const StopSignals &) = delete;
    StopSignals &operator=(const StopSignals &) = delete;
    ~StopSignals();

    [[nodiscard]] std::stop_token token() const { return m_stop.get_token(); }

private:
    struct Pipe
    {
        Descriptor asked, told;
    };
    static Pipe makePipe();

    Pipe m_pipe = makePipe(); ///< a signal handler may do no more than write into it
    std::stop_source m_stop;
    std::jthread m_listener;
};
