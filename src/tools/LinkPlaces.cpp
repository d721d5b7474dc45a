#include "tools/LinkPlaces.h"

#include "tools/PageIndexReader.h"

LinkPlaces::LinkPlaces(QString project)
    : m_project(std::move(project))
{
}

const LinkPlaces::Place &LinkPlaces::of(const QString &folder, QStringView written)
{
    const std::lock_guard guard(m_guard);
    ByText<Place> &places = m_places[folder];
    if (const auto known = places.find(written); known != places.end())
        return known->second;
    Place place{written.toString(), targetOf(written)};
    if (place.target.place == PageTarget::Place::Relative)
        place.path = targetInProject(m_project, folder, place.target.path);
    const QString key = place.written;
    return places.emplace(key, std::move(place)).first->second;
}
