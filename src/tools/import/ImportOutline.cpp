#include "tools/import/ImportOutline.h"

#include "tools/NaturalOrder.h"

#include <QSet>

using namespace Qt::StringLiterals;

namespace {

constexpr int deepestLevel = 32;

using Pages = QList<const ImportItem *>;

QString key(const QString &file)
{
    return QString(file).replace(u'/', u'\\').toCaseFolded();
}

BookPage asPage(const ImportItem &item)
{
    return {.id = {}, .title = item.title, .file = item.destination(), .keyWords = {}, .pages = {}};
}

/// The folder that `file` lies in as seen from the first `from` characters; empty for that very
/// folder.
QStringView nextFolder(const QString &file, qsizetype from)
{
    const qsizetype slash = file.indexOf(u'\\', from);
    return slash < 0 ? QStringView() : QStringView(file).sliced(from, slash - from);
}

QList<BookPage> arranged(const Pages &pages, qsizetype from, int level)
{
    QList<BookPage> list;
    qsizetype i = 0;
    while (i < pages.size()) {
        const QStringView folder = nextFolder(pages[i]->destination(), from);
        if (folder.isEmpty()) {
            list.append(asPage(*pages[i++]));
            continue;
        }
        const qsizetype first = i;
        while (i < pages.size() && nextFolder(pages[i]->destination(), from) == folder)
            ++i;
        const qsizetype below = from + folder.size() + 1;
        const QString top = pages[first]->destination().sliced(below);
        const bool hangs = isIndexPage(top) && !top.contains(u'\\') && level < deepestLevel;
        QList<BookPage> inside =
            arranged(pages.sliced(first, i - first), below, hangs ? level + 1 : level);
        if (hangs) {
            BookPage parent = inside.takeFirst();
            parent.pages = inside;
            list.append(parent);
        } else {
            list.append(inside);
        }
    }
    return list;
}

} // namespace

void addToOutline(Book &book, const QList<const ImportItem *> &pages)
{
    QSet<QString> listed;
    for (const BookPage &page : flattened(book.pages))
        listed.insert(key(page.file));
    Pages fresh;
    for (const ImportItem *page : pages) {
        if (!listed.contains(key(page->destination())))
            fresh.append(page);
    }
    book.pages += arranged(fresh, 0, 1);
}
