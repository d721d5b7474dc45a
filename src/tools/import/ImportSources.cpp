#include "tools/import/ImportSources.h"

#include <QSet>

namespace {

QString key(const QString &path)
{
    return QString(path).replace(u'/', u'\\').toCaseFolded();
}

BookSource asSource(const ImportItem &item, const QByteArray &pageSum)
{
    return {.kind = item.sourceKind,
            .path = item.remembered,
            .date = item.modified.toUTC().toString(Qt::ISODate),
            .sum = QString::fromLatin1(item.sum),
            .page = item.destination(),
            .pageSum = QString::fromLatin1(pageSum)};
}

BookSource asExcluded(const ImportItem &item)
{
    return {
        .kind = SourceKind::excluded, .path = item.remembered, .date = {}, .sum = {}, .page = {}};
}

} // namespace

void noteSources(Book &book, const ImportPlan &plan, const QList<bool> &taken,
                 const QHash<int, QByteArray> &pageSums)
{
    QSet<QString> pages, files;
    for (int i = 0; i < plan.items.size(); ++i) {
        files.insert(key(plan.items[i].remembered));
        if (taken[i] && plan.items[i].isPage())
            pages.insert(key(plan.items[i].destination()));
    }
    book.sources.removeIf([&](const BookSource &old) {
        return old.kind == SourceKind::excluded ? files.contains(key(old.path))
                                                : pages.contains(key(old.page));
    });
    for (int i = 0; i < plan.items.size(); ++i) {
        const ImportItem &item = plan.items[i];
        if (taken[i] && item.isPage())
            book.sources.append(asSource(item, pageSums.value(i)));
        else if (!item.included && item.refusal.isEmpty())
            book.sources.append(asExcluded(item));
    }
}
