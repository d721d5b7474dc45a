#pragma once

#include <QString>

#include <chrono>
#include <mutex>

/// How far long work is: one line that is written over, on standard error and only when that is a
/// terminal. Called from any thread.
class ProgressLine final
{
public:
    ProgressLine();

    void show(int done, int total, const QString &what);
    void clear();

private:
    void write(const QString &line);

    const bool m_isTerminal;
    const bool m_takesEscapes;
    std::mutex m_guard;
    std::chrono::steady_clock::time_point m_next;
    bool m_isShown = false;
};
