#pragma once

#include <QElapsedTimer>

#include <ctime>
#include <functional>

/// CPU time of this process, all its threads, in seconds.
inline double cpuSeconds()
{
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

struct Spent
{
    double wall = 0, cpu = 0; ///< milliseconds
};

inline Spent spentBy(const std::function<void()> &work)
{
    QElapsedTimer time;
    time.start();
    const double before = cpuSeconds();
    work();
    const double cpu = (cpuSeconds() - before) * 1000;
    return {static_cast<double>(time.nsecsElapsed()) / 1e6, cpu};
}
