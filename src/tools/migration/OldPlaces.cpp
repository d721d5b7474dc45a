#include "tools/migration/OldPlaces.h"

#include "platform/Paths.h"

#include <QStringList>

#include <algorithm>
#include <tuple>

using namespace Qt::StringLiterals;

namespace {

bool hasDrive(const QString &path)
{
    return path.size() > 1 && path.at(1) == u':' && path.at(0).isLetter();
}

} // namespace

QString oldPlace(const QString &folder, const QString &path)
{
    const QString plain = QString(path).replace(u'/', u'\\');
    const bool isAbsolute = plain.startsWith(u'\\') || hasDrive(plain);
    QStringList pieces = isAbsolute ? QStringList(u"|"_s) : folder.split(u'\\', Qt::SkipEmptyParts);
    for (const QString &piece : plain.split(u'\\', Qt::SkipEmptyParts)) {
        if (piece == ".."_L1 && !pieces.isEmpty() && pieces.last() != ".."_L1)
            pieces.removeLast();
        else if (piece != "."_L1)
            pieces.append(piece);
    }
    return pieces.join(u'\\');
}

bool isInProject(const QString &oldPlace)
{
    return !oldPlace.startsWith(u'|') && oldPlace != ".."_L1 && !oldPlace.startsWith("..\\"_L1);
}

void OldPlaces::add(const MovedPlace &place)
{
    if (place.before.isEmpty())
        return;
    m_anyMoved = m_anyMoved || place.before != place.now;
    QList<qsizetype> &alike = m_byFolded[place.before.toCaseFolded()];
    const auto hidesIt = [&](qsizetype at) {
        const MovedPlace &other = m_places.at(at);
        return other.before == place.before && other.family == place.family
               && (other.kind == MovedPlace::Kind::Folder)
                      == (place.kind == MovedPlace::Kind::Folder);
    };
    if (std::any_of(alike.cbegin(), alike.cend(), hidesIt)) // the first is always the better one
        return;
    alike.append(m_places.size());
    m_places.append(place);
    addFolder(place);
}

void OldPlaces::addFolder(const MovedPlace &inside)
{
    const MovedPlace folder{.before = withoutBackslash(parentFolder(inside.before)),
                            .now = withoutBackslash(parentFolder(inside.now)),
                            .family = inside.family,
                            .kind = MovedPlace::Kind::Folder};
    const bool isFolder = isInProject(folder.before) && !folder.before.isEmpty();
    if (isFolder && !folder.now.isEmpty() && !find(folder.before, folder.family))
        add(folder);
}

const MovedPlace *OldPlaces::find(const QString &before, int family) const
{
    const MovedPlace *best = nullptr;
    const auto rank = [&](const MovedPlace &place) {
        return std::tuple(place.before == before, place.kind != MovedPlace::Kind::Folder,
                          place.family == family);
    };
    for (const qsizetype at : m_byFolded.value(before.toCaseFolded())) {
        const MovedPlace &place = m_places.at(at);
        if (!best || rank(place) > rank(*best))
            best = &place;
    }
    return best;
}
