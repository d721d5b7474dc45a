#include "tools/OrderedWork.h"

#include "platform/QvError.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

namespace {

/// What has been finished, and how it ended.
class Results final
{
public:
    explicit Results(int count)
        : m_finished(static_cast<size_t>(count))
        , m_failures(static_cast<size_t>(count))
    {
    }

    void finish(int number, std::exception_ptr failure)
    {
        {
            const std::lock_guard guard(m_guard);
            m_finished[static_cast<size_t>(number)] = true;
            m_failures[static_cast<size_t>(number)] = std::move(failure);
        }
        m_news.notify_one();
    }

    void waitFor(int number, const std::stop_token &stop)
    {
        std::unique_lock guard(m_guard);
        m_news.wait(guard, stop, [&] { return bool(m_finished[static_cast<size_t>(number)]); });
        if (stop.stop_requested())
            throw Unwinding{Unwinding::Reason::Stopped};
        if (const std::exception_ptr &failure = m_failures[static_cast<size_t>(number)])
            std::rethrow_exception(failure);
    }

private:
    std::mutex m_guard;
    std::condition_variable_any m_news;
    std::vector<bool> m_finished;
    std::vector<std::exception_ptr> m_failures;
};

} // namespace

void inOrder(int count, int threads, const std::stop_token &stop,
             const std::function<void(int)> &work, const std::function<void(int)> &done)
{
    Results results(count);
    std::atomic<int> next = 0;
    const auto run = [&](const std::stop_token &leaving) {
        const auto goesOn = [&] { return !leaving.stop_requested() && !stop.stop_requested(); };
        for (int number = next++; number < count && goesOn(); number = next++) {
            std::exception_ptr failure;
            try {
                work(number);
            } catch (...) {
                failure = std::current_exception();
            }
            results.finish(number, std::move(failure));
        }
    };
    std::vector<std::jthread> workers; // they stop and are waited for when this scope is left
    for (int thread = 0; thread < std::min(threads, count); ++thread)
        workers.emplace_back(run);
    for (int number = 0; number < count; ++number) {
        results.waitFor(number, stop);
        done(number);
    }
}
