#include "tools/SideWork.h"

namespace {

constexpr std::chrono::milliseconds reportPause(50); // between two reports of how far it is

} // namespace

SideWork::SideWork(Work work, bool aside)
    : m_work(std::move(work))
{
    if (aside)
        m_thread = std::jthread([this](const std::stop_token &stop) { run(stop); });
}

void SideWork::run(const std::stop_token &stop)
{
    const auto note = [this](int done, int total, const QString &what) {
        const std::lock_guard guard(m_guard);
        m_step = {done, total, what};
    };
    std::exception_ptr failure;
    try {
        m_work({note, stop});
    } catch (...) {
        failure = std::current_exception();
    }
    {
        const std::lock_guard guard(m_guard);
        m_failure = std::move(failure);
        m_over = true;
    }
    m_news.notify_one();
}

void SideWork::finish(const Progress &progress)
{
    if (!m_thread.joinable()) {
        m_work(progress);
        return;
    }
    while (!isOver()) {
        Step step;
        {
            const std::lock_guard guard(m_guard);
            step = m_step;
        }
        progress.step(step.done, step.total, step.what);
    }
    m_thread.join();
    if (m_failure)
        std::rethrow_exception(m_failure);
}

bool SideWork::isOver()
{
    std::unique_lock guard(m_guard);
    return m_news.wait_for(guard, reportPause, [this] { return m_over; });
}
