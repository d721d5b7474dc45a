#include "controls/books/OutlineEdit.h"

#include "tools/NaturalOrder.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace {
QString orderOf(const BookPage &page)
{
    QString key;
    appendNaturalKey(key, page.title.isEmpty() ? page.file : page.title);
    return key;
}

std::optional<OutlineEdit::Row> rowBelow(const QList<BookPage> &pages, const QString &parent,
                                         const QString &id)
{
    for (int row = 0; row < pages.size(); ++row) {
        if (pages.at(row).id == id)
            return OutlineEdit::Row{parent, row};
        if (const auto found = rowBelow(pages.at(row).pages, pages.at(row).id, id))
            return found;
    }
    return {};
}

bool moveAmong(QList<BookPage> &pages, const QSet<QString> &ids, bool up)
{
    bool moved = false;
    const auto isChosen = [&](qsizetype i) { return ids.contains(pages.at(i).id); };
    for (qsizetype step = 1; step < pages.size(); ++step) {
        const qsizetype from = up ? step : pages.size() - 1 - step;
        const qsizetype to = up ? from - 1 : from + 1;
        if (isChosen(from) && !isChosen(to)) {
            pages.swapItemsAt(from, to);
            moved = true;
        }
    }
    for (BookPage &page : pages) {
        if (!ids.contains(page.id))
            moved |= moveAmong(page.pages, ids, up);
    }
    return moved;
}
} // namespace

BookPage *OutlineEdit::find(QList<BookPage> &outline, const QString &id)
{
    for (BookPage &page : outline) {
        if (page.id == id)
            return &page;
        if (BookPage *const below = find(page.pages, id))
            return below;
    }
    return nullptr;
}

OutlineEdit::Row OutlineEdit::rowOf(const QList<BookPage> &outline, const OutlinePlace &place)
{
    if (place.where == OutlinePlace::Where::Below)
        return {place.page, -1};
    Row found = rowBelow(outline, {}, place.page).value_or(Row());
    if (place.where == OutlinePlace::Where::After && found.row >= 0)
        ++found.row;
    return found;
}

QList<BookPage> OutlineEdit::take(QList<BookPage> &outline, const QSet<QString> &ids)
{
    QList<BookPage> taken, left;
    for (BookPage &page : outline) {
        if (ids.contains(page.id)) {
            taken.append(page);
        } else {
            taken.append(take(page.pages, ids));
            left.append(page);
        }
    }
    outline = left;
    return taken;
}

bool OutlineEdit::insert(QList<BookPage> &outline, const QList<BookPage> &pages,
                         const OutlinePlace &place)
{
    if (place.page.isEmpty()) {
        outline.append(pages);
        return true;
    }
    for (qsizetype i = 0; i < outline.size(); ++i) {
        if (outline.at(i).id != place.page) {
            if (insert(outline[i].pages, pages, place))
                return true;
            continue;
        }
        if (place.where == OutlinePlace::Where::Below) {
            outline[i].pages.append(pages);
            return true;
        }
        qsizetype at = place.where == OutlinePlace::Where::After ? i + 1 : i;
        for (const BookPage &page : pages)
            outline.insert(at++, page);
        return true;
    }
    return false;
}

bool OutlineEdit::moveUp(QList<BookPage> &outline, const QSet<QString> &ids)
{
    return moveAmong(outline, ids, true);
}

bool OutlineEdit::moveDown(QList<BookPage> &outline, const QSet<QString> &ids)
{
    return moveAmong(outline, ids, false);
}

bool OutlineEdit::promote(QList<BookPage> &outline, const QSet<QString> &ids)
{
    bool moved = false;
    for (qsizetype i = 0; i < outline.size(); ++i) {
        if (ids.contains(outline.at(i).id))
            continue;
        QList<BookPage> up, stay;
        for (const BookPage &below : std::as_const(outline.at(i).pages))
            (ids.contains(below.id) ? up : stay).append(below);
        moved |= promote(stay, ids) || !up.isEmpty();
        outline[i].pages = stay;
        for (const BookPage &page : std::as_const(up))
            outline.insert(++i, page);
    }
    return moved;
}

bool OutlineEdit::demote(QList<BookPage> &outline, const QSet<QString> &ids)
{
    bool moved = false;
    for (BookPage &page : outline) {
        if (!ids.contains(page.id))
            moved |= demote(page.pages, ids);
    }
    for (qsizetype i = 1; i < outline.size();) {
        if (ids.contains(outline.at(i).id) && !ids.contains(outline.at(i - 1).id)) {
            const BookPage page = outline.takeAt(i);
            outline[i - 1].pages.append(page);
            moved = true;
        } else {
            ++i;
        }
    }
    return moved;
}

bool OutlineEdit::sort(QList<BookPage> &outline, const QString &parent)
{
    BookPage *const page = parent.isEmpty() ? nullptr : find(outline, parent);
    if (page == nullptr && !parent.isEmpty())
        return false;
    QList<BookPage> &pages = page == nullptr ? outline : page->pages;
    const auto comesFirst = [](const BookPage &a, const BookPage &b) {
        return orderOf(a) < orderOf(b);
    };
    if (std::is_sorted(pages.cbegin(), pages.cend(), comesFirst))
        return false;
    std::stable_sort(pages.begin(), pages.end(), comesFirst);
    return true;
}
