#include "tools/ReferenceRewriter.h"

#include "tools/html/HtmlEntities.h"

#include <QUrl>

#include <algorithm>

namespace {

/// Where the path of a reference ends.
qsizetype endOfPath(QStringView reference)
{
    qsizetype end = reference.size();
    for (const QChar stop : {u'?', u'#'}) {
        const qsizetype at = reference.indexOf(stop);
        if (at >= 0)
            end = std::min(end, at);
    }
    while (end > 0 && reference[end - 1].isSpace())
        --end;
    return end;
}

/// Where a suffix goes in a reference as written: before the last dot of its file name.
qsizetype endOfStem(QStringView reference)
{
    const qsizetype end = endOfPath(reference);
    const QStringView path = reference.first(end);
    const qsizetype slash = std::max(path.lastIndexOf(u'/'), path.lastIndexOf(u'\\'));
    const qsizetype dot = path.lastIndexOf(u'.');
    return dot > slash ? dot : end;
}

QString withSuffix(QStringView reference, const QString &suffix)
{
    QString value = withoutEntities(reference);
    const bool escaped = value != reference;
    value.insert(endOfStem(value), suffix);
    return escaped ? value.toHtmlEscaped() : value;
}

bool isSlash(QChar c)
{
    return c == u'/' || c == u'\\';
}

using NewName = std::function<QString(const QString &path)>;

/// The last piece of `path`, which is part of a reference without entities, under its new name.
QString renamedPiece(QStringView path, const QString &piece, const NewName &newName)
{
    const QString target = targetOf(path).path;
    const QStringView name = QStringView(target).sliced(target.lastIndexOf(u'/') + 1);
    if (name.isEmpty() || name == u"." || name == u"..")
        return piece;
    const QString now = newName(target);
    if (now.isEmpty())
        return piece;
    if (now.startsWith(name, Qt::CaseInsensitive))
        return piece + now.sliced(name.size()); // as spelled and escaped by the author
    return piece.first(isSlash(piece.front()) ? 1 : 0)
           + QString::fromLatin1(QUrl::toPercentEncoding(now));
}

QString withNewNames(QStringView reference, const NewName &newName)
{
    const QString plain = withoutEntities(reference);
    const QStringView whole = plain;
    QString value;
    qsizetype from = 0;
    const qsizetype end = endOfPath(whole);
    for (qsizetype at = 0; at <= end; ++at) {
        if (at < end && !isSlash(whole[at]))
            continue;
        value += renamedPiece(whole.first(at), plain.sliced(from, at - from), newName);
        from = at;
    }
    value += whole.sliced(end);
    if (value == plain)
        return reference.toString();
    return plain == reference ? value : value.toHtmlEscaped();
}

/// `text` with what `change` makes of each relative reference.
QString withChanged(const QString &text, const QList<PageReference> &references,
                    const std::function<QString(QStringView written, const PageTarget &)> &change)
{
    QString result;
    qsizetype from = 0;
    for (const PageReference &reference : references) {
        const QStringView written = QStringView(text).sliced(reference.start, reference.length);
        const PageTarget target = targetOf(written);
        if (target.place != PageTarget::Place::Relative || reference.start < from)
            continue;
        result += QStringView(text).sliced(from, reference.start - from);
        result += change(written, target);
        from = reference.start + reference.length;
    }
    return result += QStringView(text).sliced(from);
}

} // namespace

QString withSuffixedNames(const QString &text, const QList<PageReference> &references,
                          const std::function<QString(const QString &path)> &suffix)
{
    return withChanged(text, references, [&](QStringView written, const PageTarget &target) {
        const QString added = suffix(target.path);
        return added.isEmpty() ? written.toString() : withSuffix(written, added);
    });
}

QString withRenamedFolders(const QString &text, const QList<PageReference> &references,
                           const NewName &newName)
{
    return withChanged(text, references, [&](QStringView written, const PageTarget &) {
        return withNewNames(written, newName);
    });
}
