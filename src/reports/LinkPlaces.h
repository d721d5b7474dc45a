#pragma once

#include <QHash>
#include <QString>
#include <QStringView>

#include <optional>
#include <vector>

/// The distinct places below Docs that the paths of one link file name, and what was found there.
class LinkPlaces final
{
public:
    enum class State : char { Missing, Bad, Good };

    /// The number of the place of a path as a listing takes it: cut at the last "#".
    quint32 listed(QStringView path);
    /// As an identifier leads to it: the whole path, and only when nothing is there, the cut one.
    quint32 lookedUp(QStringView path);
    void squeeze(); ///< when no more will be added

    [[nodiscard]] quint32 size() const { return static_cast<quint32>(m_places.size()); }
    [[nodiscard]] const QString &path(quint32 place) const { return m_places[place].path; }
    /// Different places may be told about from several threads at once.
    void setState(quint32 place, State state) { m_places[place].state = state; }
    [[nodiscard]] bool isGood(quint32 place) const;

private:
    struct Place
    {
        QString path;
        std::optional<quint32> otherwise; ///< looked for when nothing is at `path`
        State state = State::Missing;
    };
    quint32 number(QStringView path);

    QHash<QString, quint32> m_numbers;
    std::vector<Place> m_places;
};
