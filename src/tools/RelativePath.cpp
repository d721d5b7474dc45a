#include "tools/RelativePath.h"

#include "platform/Paths.h"
#include "tools/html/HtmlEntities.h"

#include <QStringList>
#include <QUrl>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// A reference cut into what stands before its path, the path, and the rest.
struct Cut
{
    QString front, path, rest;
};

/// Where the path ends: at "?" or "#", but not at the "#" of a character reference.
qsizetype endOfPath(QStringView reference)
{
    for (qsizetype at = 0; at < reference.size(); ++at) {
        const QChar c = reference[at];
        if (c == u'?' || (c == u'#' && (at == 0 || reference[at - 1] != u'&')))
            return at;
    }
    return reference.size();
}

Cut cut(const QString &written)
{
    qsizetype from = 0;
    while (from < written.size() && written[from].isSpace())
        ++from;
    qsizetype end = endOfPath(written);
    while (end > from && written[end - 1].isSpace())
        --end;
    return {written.first(from), written.sliced(from, end - from), written.sliced(end)};
}

QString decoded(const QString &piece)
{
    return QUrl::fromPercentEncoding(withoutEntities(piece).toUtf8());
}

QString encoded(const QString &piece)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(piece, "+,=@!"));
}

QStringList piecesOf(const QString &path)
{
    return path.split(u'\\', Qt::SkipEmptyParts);
}

/// The pieces of a path, as written and as they are meant.
struct Pieces
{
    QStringList written, meant;
    QChar slash = u'/';
    bool endsInSlash = false;
};

Pieces cutPath(const QString &path)
{
    Pieces pieces;
    if (path.contains(u'\\') && !path.contains(u'/'))
        pieces.slash = u'\\';
    pieces.written = QString(path).replace(u'\\', u'/').split(u'/');
    if (pieces.written.size() > 1 && pieces.written.last().isEmpty()) {
        pieces.endsInSlash = true;
        pieces.written.removeLast();
    }
    for (const QString &piece : std::as_const(pieces.written))
        pieces.meant.append(decoded(piece));
    return pieces;
}

/// How a path that climbs out of the project comes back into it: the name it says there; "" when
/// the path stays inside.
QString wayBack(const QStringList &meant, const QString &folder)
{
    qsizetype depth = piecesOf(folder).size() + 1; // below Docs
    for (qsizetype i = 0; i + 1 < meant.size(); ++i) {
        if (meant[i] == ".."_L1)
            --depth;
        else if (meant[i] != "."_L1 && !meant[i].isEmpty())
            ++depth;
        if (depth == 0)
            return meant[i + 1];
    }
    return {};
}

QStringList relativePieces(const QString &folder, const QString &target, bool isFolder)
{
    const QStringList from = piecesOf(folder);
    const QStringList to = piecesOf(target);
    const qsizetype most = std::min(from.size(), to.size() - (isFolder ? 0 : 1));
    qsizetype shared = 0;
    while (shared < most && from[shared].compare(to[shared], Qt::CaseInsensitive) == 0)
        ++shared;
    return QStringList(from.size() - shared, u".."_s) + to.sliced(shared);
}

QStringList wantedPieces(const Pieces &pieces, const ReferenceEnds &before,
                         const ReferenceEnds &now)
{
    if (before.folder == now.folder && parentFolder(before.target) == parentFolder(now.target))
        return pieces.meant.first(pieces.meant.size() - 1)
               << lastComponent(now.target); // "../x/./a.htm" stays so far as it is
    if (const QString name = wayBack(pieces.meant, before.folder); !name.isEmpty())
        return QStringList(piecesOf(now.folder).size() + 1, u".."_s)
               << name << piecesOf(now.target);
    const bool isFolder = pieces.endsInSlash || pieces.meant.last() == ".."_L1;
    QStringList wanted = relativePieces(now.folder, now.target, isFolder);
    const bool saysHere = pieces.meant.first() == "."_L1 && wanted.value(0) != ".."_L1;
    if (saysHere || wanted.isEmpty())
        wanted.prepend(u"."_s);
    return wanted;
}

/// `wanted` with every piece at the two ends that the author wrote already as written.
QString spelled(const QStringList &wanted, const Pieces &pieces)
{
    const qsizetype most = std::min(wanted.size(), pieces.meant.size());
    qsizetype front = 0;
    while (front < most && wanted[front] == pieces.meant[front])
        ++front;
    qsizetype back = 0;
    while (back < most - front
           && wanted[wanted.size() - 1 - back] == pieces.meant[pieces.meant.size() - 1 - back])
        ++back;
    QStringList result = pieces.written.first(front);
    for (const QString &piece : wanted.sliced(front, wanted.size() - front - back))
        result.append(encoded(piece));
    result += pieces.written.last(back);
    return result.join(pieces.slash) + (pieces.endsInSlash ? QString(pieces.slash) : QString());
}

} // namespace

QString redirected(const QString &written, const ReferenceEnds &before, const ReferenceEnds &now)
{
    const Cut cutOut = cut(written);
    const Pieces pieces = cutPath(cutOut.path);
    return cutOut.front + spelled(wantedPieces(pieces, before, now), pieces) + cutOut.rest;
}
