#include "tools/migration/FreePlaces.h"

#include "platform/Paths.h"
#include "projectfiles/ProductFolders.h"
#include "tools/migration/SafeNames.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QString numbered(const QString &path, int number)
{
    return parentFolder(path) + withAddition(lastComponent(path), u"_%1"_s.arg(number));
}

/// The name for something directly in the project folder.
QString atTop(const QString &folder, const QString &name)
{
    return folder.isEmpty() ? safeAtTop(name) : folder + name;
}

} // namespace

FreePlaces::FreePlaces()
{
    for (const QLatin1StringView folder : productFolders)
        take(folder, Kind::File); // so that nothing shares it
    take(u"logs"_s, Kind::File);
}

QString FreePlaces::ownFolder(const QStringList &pieces)
{
    const qsizetype above = std::min(pieces.size(), deepestFolder) - 1;
    const QString parent = folders({}, pieces.first(above));
    return take(atTop(parent, pieces.last()), Kind::Folder) + u'\\';
}

QString FreePlaces::file(const QString &folder, const QStringList &pieces)
{
    const QString parent = folders(folder, pieces.first(pieces.size() - 1));
    return take(atTop(parent, pieces.last()), Kind::File);
}

QString FreePlaces::globalFolder()
{
    const QString name = ProjectFile::globalFolder;
    m_taken.insert(name.toCaseFolded(), {name, Kind::Folder});
    return name + u'\\';
}

// What would lie too deep comes to lie in the deepest folder that may be.
QString FreePlaces::folders(const QString &top, const QStringList &pieces)
{
    QString folder = top;
    qsizetype depth = top.count(u'\\');
    for (const QString &piece : pieces) {
        if (depth++ < deepestFolder)
            folder = sharedFolder(atTop(folder, piece)) + u'\\';
    }
    return folder;
}

QString FreePlaces::sharedFolder(const QString &path)
{
    QString &place = m_shared[path.toCaseFolded()];
    if (place.isEmpty()) {
        const auto found = m_taken.constFind(path.toCaseFolded());
        const bool isFolder = found != m_taken.cend() && found->kind == Kind::Folder;
        place = isFolder ? found->path : take(path, Kind::Folder);
    }
    return place;
}

QString FreePlaces::take(const QString &path, Kind kind)
{
    QString place = path;
    int &number = m_next[path.toCaseFolded()];
    for (number = std::max(number, 1); m_taken.contains(place.toCaseFolded());)
        place = numbered(path, ++number);
    m_taken.insert(place.toCaseFolded(), {place, kind});
    return place;
}
