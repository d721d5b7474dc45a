#include "tools/ReferenceRewriter.h"

#include "tools/HtmlEntities.h"

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

using Suffix = std::function<QString(const QString &path)>;

/// What goes behind the last piece of `path`, which is part of a reference without entities.
QString suffixBehind(QStringView path, const Suffix &suffix)
{
    const QString target = targetOf(path).path;
    const QStringView name = QStringView(target).sliced(target.lastIndexOf(u'/') + 1);
    return name.isEmpty() || name == u"." || name == u".." ? QString() : suffix(target);
}

QString withSuffixes(QStringView reference, const Suffix &suffix)
{
    const QString plain = withoutEntities(reference);
    QString value;
    qsizetype from = 0;
    const qsizetype end = endOfPath(plain);
    for (qsizetype at = 0; at <= end; ++at) {
        if (at < end && !isSlash(plain[at]))
            continue;
        value += QStringView(plain).sliced(from, at - from);
        value += suffixBehind(QStringView(plain).first(at), suffix);
        from = at;
    }
    value += QStringView(plain).sliced(end);
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
                          const Suffix &suffix)
{
    return withChanged(text, references, [&](QStringView written, const PageTarget &target) {
        const QString added = suffix(target.path);
        return added.isEmpty() ? written.toString() : withSuffix(written, added);
    });
}

QString withSuffixedFolders(const QString &text, const QList<PageReference> &references,
                            const Suffix &suffix)
{
    return withChanged(text, references, [&](QStringView written, const PageTarget &) {
        return withSuffixes(written, suffix);
    });
}
