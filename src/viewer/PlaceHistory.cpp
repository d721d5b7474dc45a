#include "viewer/PlaceHistory.h"

void PlaceHistory::visit(const ViewerPlace &place)
{
    if (m_at >= 0 && m_visits[m_at].place == place)
        return;
    m_visits.resize(++m_at);
    m_visits.append({place, 0});
}

void PlaceHistory::note(int scroll)
{
    if (m_at >= 0)
        m_visits[m_at].scroll = scroll;
}

bool PlaceHistory::canGo(int steps) const
{
    return m_at + steps >= 0 && m_at + steps < m_visits.size();
}

const PlaceHistory::Visit &PlaceHistory::go(int steps)
{
    m_at += steps;
    return m_visits.at(m_at);
}

ViewerPlace PlaceHistory::here() const
{
    return m_at < 0 ? ViewerPlace() : m_visits.at(m_at).place;
}
