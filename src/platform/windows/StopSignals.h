#pragma once

#include <stop_token>

/// Ctrl+C, and the console's closing, as the Stop of a program without windows. Asked a second time
/// the program ends at once. There is one of these at a time.
class StopSignals final
{
public:
    StopSignals();
    StopSignals(const StopSignals &) = delete;
    StopSignals &operator=(const StopSignals &) = delete;
    ~StopSignals();

    [[nodiscard]] std::stop_token token() const { return m_stop.get_token(); }

private:
    std::stop_source m_stop;
};
