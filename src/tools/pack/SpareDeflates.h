#pragma once

#include "tools/pack/Deflate.h"

#include <memory>
#include <mutex>
#include <vector>

/// Compressors for whichever thread needs one: they take much longer to make than to use. Not
/// thread_local, which mingw-w64 frees before it is destroyed.
class SpareDeflates final
{
public:
    class Lent final
    {
    public:
        explicit Lent(SpareDeflates &from)
            : m_from(from)
            , m_deflate(from.take())
        {
        }
        ~Lent() { m_from.giveBack(std::move(m_deflate)); }
        Lent(const Lent &) = delete;
        Lent &operator=(const Lent &) = delete;
        Deflate *operator->() const { return m_deflate.get(); }

    private:
        SpareDeflates &m_from;
        std::unique_ptr<Deflate> m_deflate;
    };

private:
    std::unique_ptr<Deflate> take()
    {
        const std::scoped_lock guard(m_guard);
        if (m_spare.empty())
            return std::make_unique<Deflate>();
        std::unique_ptr<Deflate> one = std::move(m_spare.back());
        m_spare.pop_back();
        return one;
    }
    void giveBack(std::unique_ptr<Deflate> one)
    {
        const std::scoped_lock guard(m_guard);
        m_spare.push_back(std::move(one));
    }

    std::mutex m_guard;
    std::vector<std::unique_ptr<Deflate>> m_spare;
};
