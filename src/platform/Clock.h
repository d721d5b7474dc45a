#pragma once

#include <QDateTime>

#include <chrono>

class Clock
{
public:
    virtual ~Clock() = default;
    /// Date and time as the wall clock shows them here.
    [[nodiscard]] virtual QDateTime now() = 0;
    /// Time since some fixed moment, never set back.
    [[nodiscard]] virtual std::chrono::milliseconds monotonic() = 0;
};
