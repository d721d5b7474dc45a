#include "tools/pack/PackedAhead.h"

#include "platform/QvError.h"

namespace {

constexpr qint64 farthest = 32 * 1024 * 1024; // bytes; one larger member is begun all the same

} // namespace

PackedAhead::PackedAhead(std::vector<qint64> sizes, int threads, Make make)
    : m_sizes(std::move(sizes))
    , m_make(std::move(make))
{
    for (int i = 0; i < threads; ++i)
        m_threads.emplace_back([this](const std::stop_token &leaving) { run(leaving); });
}

PackedAhead::~PackedAhead() = default;

QByteArray PackedAhead::take(const std::stop_token &stop)
{
    std::unique_lock guard(m_guard);
    m_finished.wait(guard, stop, [this] { return !m_results.empty() && m_results.front().isDone; });
    if (stop.stop_requested())
        throw Unwinding{Unwinding::Reason::Stopped};
    const Result result = std::move(m_results.front());
    m_results.pop_front();
    m_ahead -= m_sizes[m_first++];
    guard.unlock();
    m_taken.notify_all();
    if (result.failure)
        std::rethrow_exception(result.failure);
    return result.bytes;
}

void PackedAhead::run(const std::stop_token &leaving)
{
    Deflate deflate;
    while (const auto index = begin(leaving)) {
        Result result{.isDone = true, .bytes = {}, .failure = {}};
        try {
            result.bytes = m_make(deflate, *index);
        } catch (...) {
            result.failure = std::current_exception();
        }
        finish(*index, std::move(result));
    }
}

std::optional<size_t> PackedAhead::begin(const std::stop_token &leaving)
{
    std::unique_lock guard(m_guard);
    const bool mayGoOn = m_taken.wait(guard, leaving, [this] { return hasRoom(); });
    if (!mayGoOn || leaving.stop_requested() || m_next == m_sizes.size())
        return {};
    m_results.emplace_back();
    m_ahead += m_sizes[m_next];
    return m_next++;
}

void PackedAhead::finish(size_t index, Result result)
{
    {
        const std::lock_guard guard(m_guard);
        m_results[index - m_first] = std::move(result);
    }
    m_finished.notify_one();
}

bool PackedAhead::hasRoom() const
{
    return m_next == m_sizes.size() || m_results.empty() || m_ahead + m_sizes[m_next] <= farthest;
}
