#include "reports/LinkPlaces.h"

quint32 LinkPlaces::listed(QStringView path)
{
    const qsizetype anchor = path.lastIndexOf(u'#');
    return number(anchor < 0 ? path : path.first(anchor));
}

quint32 LinkPlaces::lookedUp(QStringView path)
{
    const quint32 place = number(path);
    if (!m_places[place].otherwise && path.contains(u'#')) {
        const quint32 otherwise = listed(path);
        m_places[place].otherwise = otherwise;
    }
    return place;
}

void LinkPlaces::squeeze()
{
    m_numbers = {};
    m_places.shrink_to_fit();
}

bool LinkPlaces::isGood(quint32 place) const
{
    const Place &found = m_places[place];
    if (found.state == State::Missing && found.otherwise)
        return m_places[*found.otherwise].state == State::Good;
    return found.state == State::Good;
}

quint32 LinkPlaces::number(QStringView path)
{
    const auto known = m_numbers.constFind(QString::fromRawData(path.data(), path.size()));
    if (known != m_numbers.constEnd())
        return *known;
    const QString kept = path.toString();
    m_places.push_back({kept, {}, State::Missing});
    return *m_numbers.insert(kept, size() - 1);
}
