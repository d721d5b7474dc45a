#pragma once

#include <unistd.h>

#include <utility>

/// Owns an open file descriptor.
class Descriptor final
{
public:
    explicit Descriptor(int number = -1)
        : m_number(number)
    {
    }
    Descriptor(Descriptor &&other) noexcept
        : m_number(std::exchange(other.m_number, -1))
    {
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    Descriptor &operator=(Descriptor &&) = delete;
    ~Descriptor() { close(); }

    [[nodiscard]] bool isOpen() const { return m_number >= 0; }
    [[nodiscard]] int get() const { return m_number; }
    /// Hands the number to a new owner.
    [[nodiscard]] int release() { return std::exchange(m_number, -1); }
    /// False when the system could not write what was still pending; errno says why.
    bool close() { return !isOpen() || ::close(release()) == 0; }

private:
    int m_number;
};
