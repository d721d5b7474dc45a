#pragma once

#include "reports/LinkPlaces.h"

#include <QString>
#include <QStringView>

#include <limits>
#include <optional>
#include <vector>

/// The identifiers that one link file publishes, in the order in which they are asked, each with
/// the number of its place among the file's `LinkPlaces`.
class LinkDestinations final
{
public:
    struct Destination
    {
        size_t hash; ///< of the identifier
        quint32 begin;
        quint32 size;
        quint32 place;
    };

    void append(QStringView identifier); ///< with a place still to come
    /// The place of those appended since the last call; without one they lead nowhere and go.
    void settle(std::optional<quint32> place);
    /// Asks those of `first`, of the same file, before its own.
    void putBehind(LinkDestinations first);
    void squeeze(); ///< when no more will be appended

    [[nodiscard]] static size_t hashOf(QStringView identifier);
    [[nodiscard]] const std::vector<Destination> &all() const { return m_all; }
    [[nodiscard]] QStringView identifier(const Destination &destination) const
    {
        return QStringView(m_texts).sliced(destination.begin, destination.size);
    }

private:
    QString m_texts;
    std::vector<Destination> m_all;
    size_t m_settled = 0;
};

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
