#pragma once

#include "platform/Progress.h"

#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>

/// Work on a thread of its own while the thread that began it does other things. It is stopped and
/// waited for when this goes.
class SideWork final
{
public:
    using Work = std::function<void(const Progress &)>;

    /// Begins at once; `aside` false: does everything in `finish`, for who wants one thread only.
    explicit SideWork(Work work, bool aside = true);

    /// Waits for its end and tells meanwhile how far it is. Throws what the work threw, and
    /// `Unwinding{Stopped}` when Stop was pressed; the work stops then too. Called once.
    void finish(const Progress &progress);

private:
    void run(const std::stop_token &stop);
    [[nodiscard]] bool isOver();

    struct Step
    {
        int done = 0, total = 0;
        QString what = {};
    };
    const Work m_work;
    std::mutex m_guard; ///< of what follows
    std::condition_variable m_news;
    Step m_step;
    bool m_over = false;
    std::exception_ptr m_failure;
    std::jthread m_thread; // the last: goes first
};
