#include "tools/words/WordTable.h"

#include <bit>
#include <cstring>

namespace {

template <typename Number>
quint64 read(const char *at)
{
    Number number;
    std::memcpy(&number, at, sizeof number);
    return number;
}

quint64 mixed(quint64 a, quint64 b)
{
    constexpr quint64 odd = 0x9E3779B97F4A7C15U;
    const quint64 product = (a ^ odd) * (b | 1);
    return product ^ (product >> 29);
}

/// The first and the last bytes overlap, so that no length needs a loop of its own.
quint32 hashOf(std::string_view word)
{
    const char *const at = word.data();
    const size_t size = word.size();
    quint64 hash = size * 0xD6E8FEB86659FD93U;
    if (size >= 8) {
        for (size_t i = 0; i + 8 < size; i += 8)
            hash = mixed(hash ^ read<quint64>(at + i), 0xA0761D6478BD642FU);
        hash ^= read<quint64>(at + size - 8);
    } else if (size >= 4) {
        hash ^= read<quint32>(at) << 32 | read<quint32>(at + size - 4);
    } else if (size > 0) {
        hash ^=
            read<quint8>(at) << 16 | read<quint8>(at + size / 2) << 8 | read<quint8>(at + size - 1);
    }
    hash = mixed(hash, 0xE7037ED1A0B428DBU);
    return static_cast<quint32>(hash ^ (hash >> 32));
}

} // namespace

WordTable::WordTable()
    : m_slots(1024)
{
}

quint32 WordTable::numberOf(std::string_view word)
{
    const quint32 hash = hashOf(word);
    const size_t mask = m_slots.size() - 1;
    for (size_t at = hash & mask; m_slots[at].number != 0; at = (at + 1) & mask) {
        const quint32 number = m_slots[at].number - 1;
        if (m_slots[at].hash == hash && this->word(number) == word)
            return number;
    }
    if (size_t(size() + 1) * 3 > m_slots.size() * 2)
        grow(m_slots.size() * 2);
    m_bytes += word;
    m_starts.push_back(static_cast<quint32>(m_bytes.size()));
    place({hash, size()});
    return size() - 1;
}

void WordTable::reserve(quint32 words)
{
    if (const size_t slots = std::bit_ceil(size_t(words) * 2); slots > m_slots.size())
        grow(slots);
    m_starts.reserve(words + 1);
}

void WordTable::place(Slot slot)
{
    const size_t mask = m_slots.size() - 1;
    size_t at = slot.hash & mask;
    while (m_slots[at].number != 0)
        at = (at + 1) & mask;
    m_slots[at] = slot;
}

void WordTable::grow(size_t slots)
{
    std::vector<Slot> old(slots);
    old.swap(m_slots);
    for (const Slot &slot : old) {
        if (slot.number != 0)
            place(slot);
    }
}
