#include "reports/DestinationIndex.h"

#include <bit>

namespace {

constexpr quint32 largestTag = 0x7FFFFFFF;

quint32 tagOf(size_t hash)
{
    return static_cast<quint32>(hash >> 33);
}

} // namespace

DestinationIndex::DestinationIndex(size_t count)
    : m_slots(std::bit_ceil(2 * count + 1))
{
}

void DestinationIndex::add(const LinkDestinations &file, const LinkPlaces &places)
{
    for (const LinkDestinations::Destination &destination : file.all()) {
        const QStringView identifier = file.identifier(destination);
        Slot &slot = m_slots[slotFor(identifier, destination.hash)];
        if (slot.size != nothing)
            continue;
        slot.text = identifier.data();
        slot.size = destination.size;
        slot.tag = tagOf(destination.hash) & largestTag;
        slot.isGood = places.isGood(destination.place);
    }
}

bool DestinationIndex::leadsToPage(QStringView identifier) const
{
    return m_slots[slotFor(identifier, LinkDestinations::hashOf(identifier))].isGood;
}

/// The slot that holds the identifier, or the free one where it belongs.
size_t DestinationIndex::slotFor(QStringView identifier, size_t hash) const
{
    const size_t last = m_slots.size() - 1;
    for (size_t at = hash & last;; at = (at + 1) & last) {
        const Slot &slot = m_slots[at];
        if (slot.size == nothing)
            return at;
        if (slot.tag == tagOf(hash) && slot.size == identifier.size()
            && QStringView(slot.text, slot.size) == identifier)
            return at;
    }
}
