#include "tools/ReferenceRewriter.h"

#include "tools/HtmlEntities.h"

#include <algorithm>

namespace {

/// Where a suffix goes in a reference as written: before the last dot of its file name.
qsizetype endOfStem(QStringView reference)
{
    qsizetype end = reference.size();
    for (const QChar stop : {u'?', u'#'}) {
        const qsizetype at = reference.indexOf(stop);
        if (at >= 0)
            end = std::min(end, at);
    }
    while (end > 0 && reference[end - 1].isSpace())
        --end;
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

} // namespace

QString withSuffixedNames(const QString &text, const QList<PageReference> &references,
                          const std::function<QString(const QString &path)> &suffix)
{
    QString result;
    qsizetype from = 0;
    for (const PageReference &reference : references) {
        const QStringView written = QStringView(text).sliced(reference.start, reference.length);
        const PageTarget target = targetOf(written);
        if (target.place != PageTarget::Place::Relative || reference.start < from)
            continue;
        const QString added = suffix(target.path);
        if (added.isEmpty())
            continue;
        result += QStringView(text).sliced(from, reference.start - from);
        result += withSuffix(written, added);
        from = reference.start + reference.length;
    }
    return result += QStringView(text).sliced(from);
}
