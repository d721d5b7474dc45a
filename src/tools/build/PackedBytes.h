#pragma once

#include <QtGlobal>

#include <array>
#include <string>
#include <string_view>

/// Numbers and texts one after the other: a number takes seven bits to a byte, low ones first.
class PackedWriter final
{
public:
    /// Leaves room in front for what is known only at the end.
    explicit PackedWriter(size_t head = 0)
        : m_bytes(head, '\0')
    {
    }

    void number(quint64 value)
    {
        std::array<char, 10> bytes; // seven bits each
        size_t length = 0;
        for (; value >= 0x80; value >>= 7U)
            bytes[length++] = static_cast<char>(0x80U | (value & 0x7FU));
        bytes[length++] = static_cast<char>(value);
        m_bytes.append(bytes.data(), length);
    }
    /// One that may be negative, near 0.
    void step(qint64 value)
    {
        number((static_cast<quint64>(value) << 1U) ^ static_cast<quint64>(value >> 63));
    }
    void text(std::string_view value)
    {
        number(value.size());
        m_bytes += value;
    }
    void setHead(std::string_view head) { m_bytes.replace(0, head.size(), head); }
    [[nodiscard]] const std::string &bytes() const { return m_bytes; }

private:
    std::string m_bytes;
};

/// Reads them back. Past the end, or at anything impossible, everything is 0 and `isGood` says no.
class PackedReader final
{
public:
    explicit PackedReader(std::string_view bytes)
        : m_rest(bytes)
    {
    }

    [[nodiscard]] quint64 number()
    {
        quint64 value = 0;
        for (unsigned shift = 0; shift < 64; shift += 7) {
            if (m_rest.empty())
                break;
            const auto next = static_cast<unsigned char>(m_rest.front());
            m_rest.remove_prefix(1);
            value |= static_cast<quint64>(next & 0x7FU) << shift;
            if (next < 0x80)
                return value;
        }
        fail();
        return 0;
    }
    /// A number below `limit`.
    [[nodiscard]] quint64 numberBelow(quint64 limit)
    {
        const quint64 value = number();
        if (value < limit)
            return value;
        fail();
        return 0;
    }
    /// How many things follow that take at least a byte each.
    [[nodiscard]] size_t count() { return numberBelow(m_rest.size() + 1); }
    [[nodiscard]] qint64 step()
    {
        const quint64 value = number();
        return static_cast<qint64>(value >> 1U) ^ -static_cast<qint64>(value & 1U);
    }
    [[nodiscard]] std::string_view text()
    {
        const size_t length = count();
        if (length > m_rest.size())
            fail();
        const std::string_view value = m_rest.substr(0, length);
        m_rest.remove_prefix(value.size());
        return value;
    }

    [[nodiscard]] bool isGood() const { return m_good; }
    [[nodiscard]] bool atEnd() const { return m_rest.empty(); }
    void fail()
    {
        m_good = false;
        m_rest = {};
    }

private:
    std::string_view m_rest;
    bool m_good = true;
};
