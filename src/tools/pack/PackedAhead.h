#pragma once

#include "tools/pack/Deflate.h"

#include <condition_variable>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <optional>
#include <stop_token>
#include <thread>
#include <vector>

/// Compresses members on several threads ahead of the one who takes them in order. How far ahead is
/// limited by their bytes, so that a large project needs no more memory than a small one.
class PackedAhead final
{
public:
    using Make = std::function<QByteArray(Deflate &, size_t)>;

    /// `sizes`: of the members before they are compressed. `make` is called on the threads.
    PackedAhead(std::vector<qint64> sizes, int threads, Make make);
    PackedAhead(const PackedAhead &) = delete;
    PackedAhead &operator=(const PackedAhead &) = delete;
    ~PackedAhead();

    /// The next member. What `make` threw for it is thrown here, and `Unwinding{Stopped}` when
    /// `stop` was asked for.
    QByteArray take(const std::stop_token &stop);

private:
    struct Result
    {
        bool isDone = false;
        QByteArray bytes;
        std::exception_ptr failure;
    };

    void run(const std::stop_token &leaving);
    std::optional<size_t> begin(const std::stop_token &leaving);
    void finish(size_t index, Result result);
    [[nodiscard]] bool hasRoom() const;

    std::vector<qint64> m_sizes;
    Make m_make;
    std::mutex m_guard;
    std::condition_variable_any m_finished, m_taken;
    std::deque<Result> m_results;        ///< of the members that were begun and not yet taken
    size_t m_next = 0;                   ///< to begin with
    size_t m_first = 0;                  ///< to be taken; that of `m_results.front()`
    qint64 m_ahead = 0;                  ///< bytes of what `m_results` stands for
    std::vector<std::jthread> m_threads; ///< last: they end before the rest goes
};
