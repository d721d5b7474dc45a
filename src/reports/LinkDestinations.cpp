#include "reports/LinkDestinations.h"

#include <QHashFunctions>

#include <bit>

namespace {

constexpr quint32 largestTag = 0x7FFFFFFF;

quint32 tagOf(size_t hash)
{
    return static_cast<quint32>(hash >> 33);
}

} // namespace

size_t LinkDestinations::hashOf(QStringView identifier)
{
    return qHash(identifier, QHashSeed::globalSeed());
}

void LinkDestinations::append(QStringView identifier)
{
    m_all.push_back({hashOf(identifier), static_cast<quint32>(m_texts.size()),
                     static_cast<quint32>(identifier.size()), 0});
    m_texts.append(identifier);
}

void LinkDestinations::settle(std::optional<quint32> place)
{
    if (!place)
        m_all.resize(m_settled);
    for (; m_settled < m_all.size(); ++m_settled)
        m_all[m_settled].place = *place;
}

void LinkDestinations::putBehind(LinkDestinations first)
{
    for (const Destination &destination : m_all) {
        first.append(identifier(destination));
        first.settle(destination.place);
    }
    *this = std::move(first);
}

void LinkDestinations::squeeze()
{
    m_texts.squeeze();
    m_all.shrink_to_fit();
}

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
