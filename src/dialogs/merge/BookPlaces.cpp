#include "dialogs/merge/BookPlaces.h"

#include "platform/Paths.h"

using namespace Qt::StringLiterals;

std::optional<QString> relativeBookFolder(const QString &stored)
{
    const auto inside = insideOf(u"P"_s, stored);
    if (!inside)
        return std::nullopt;
    return withoutBackslash(inside->sliced(2));
}

QSet<QString> foldedBookFolders(const QStringList &stored)
{
    QSet<QString> folders;
    for (const QString &folder : stored) {
        if (const auto relative = relativeBookFolder(folder))
            folders.insert(relative->toCaseFolded());
    }
    return folders;
}

namespace {

constexpr qsizetype longestName = 255; // bytes

/// A name that is full gives up its end for the number.
QString numbered(const QString &path, const QString &number)
{
    return parentFolder(path) + shortened(lastComponent(path), longestName - number.size())
           + number;
}

} // namespace

BookPlaces::BookPlaces(FileSystem &files, const QString &folder, const QStringList &bookFolders)
    : m_index(files, folder)
    , m_books(foldedBookFolders(bookFolders))
{
}

void BookPlaces::startProject()
{
    m_places.clear();
    m_renamed.clear();
}

QString BookPlaces::placeFor(const QString &relative)
{
    QString from;
    QString place;
    const QStringList pieces = relative.split(u'\\');
    for (qsizetype i = 0; i < pieces.size(); ++i) {
        const QString separator = i == 0 ? QString() : u"\\"_s;
        from += separator + pieces[i];
        place = pieceAt(from, place + separator + pieces[i], i == pieces.size() - 1);
    }
    m_books.insert(place.toCaseFolded());
    return place;
}

/// The place of one folder on the way.
QString BookPlaces::pieceAt(const QString &from, const QString &candidate, bool isLast)
{
    const QString key = from.toCaseFolded();
    if (const auto known = m_places.constFind(key); known != m_places.constEnd() && !isLast)
        return *known;
    QString place = candidate;
    if (isLast ? isTaken(candidate) : !isOpen(candidate)) {
        for (int number = 1; isTaken(place); ++number)
            place = numbered(candidate, QString::number(number));
        m_renamed.insert(from, place);
    }
    m_places.insert(key, place);
    m_taken.insert(place.toCaseFolded());
    return place;
}

bool BookPlaces::isTaken(const QString &relative)
{
    return m_taken.contains(relative.toCaseFolded()) || m_index.find(relative).has_value();
}

/// Whether books of several projects may lie in this folder.
bool BookPlaces::isOpen(const QString &relative)
{
    if (m_books.contains(relative.toCaseFolded()))
        return false;
    const auto there = m_index.find(relative);
    return !there || there->status.kind == FileKind::Folder;
}
