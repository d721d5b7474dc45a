#pragma once

#include "platform/Clock.h"

/// The machine's own clocks.
class SystemClock final : public Clock
{
public:
    [[nodiscard]] QDateTime now() override { return QDateTime::currentDateTime(); }
    [[nodiscard]] std::chrono::milliseconds monotonic() override
    {
        const auto since = std::chrono::steady_clock::now().time_since_epoch();
        return std::chrono::duration_cast<std::chrono::milliseconds>(since);
    }
};
