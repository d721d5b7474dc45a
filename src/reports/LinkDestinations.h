#pragma once

#include <QString>
#include <QStringView>

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
