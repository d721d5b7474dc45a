#pragma once

#include "reports/LinkDestinations.h"
#include "reports/LinkPlaces.h"

#include <QStringView>

#include <limits>
#include <vector>

/// Which identifiers lead to a page, over all link files. Once all files are added it may be asked
/// by several threads at once.
class DestinationIndex final
{
public:
    /// Room for so many destinations; more cannot be added.
    explicit DestinationIndex(size_t count);

    /// The destinations of the next file, which stays where it is, and what was found at their
    /// places. The first one of an identifier counts.
    void add(const LinkDestinations &file, const LinkPlaces &places);

    [[nodiscard]] bool leadsToPage(QStringView identifier) const;

private:
    static constexpr quint32 nothing = std::numeric_limits<quint32>::max();

    // Looking one up costs what it takes to fetch a slot and the text from memory. So a slot is
    // small and holds enough of the hash to tell others without a look at their texts.
    struct Slot
    {
        const QChar *text = nullptr;
        quint32 size = nothing; ///< `nothing` in a free slot
        quint32 tag : 31 = 0;   ///< the upper end of the hash
        quint32 isGood : 1 = 0;
    };
    [[nodiscard]] size_t slotFor(QStringView identifier, size_t hash) const;

    std::vector<Slot> m_slots; ///< a power of two, at least half of it free
};
