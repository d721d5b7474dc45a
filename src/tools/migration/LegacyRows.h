#pragma once

#include "tools/migration/LegacyBookSet.h"

#include <algorithm>
#include <numeric>
#include <tuple>

/// Places of rows in their order: by SortOrder, then by key. What lacks one comes last.
template <typename Row>
QList<qsizetype> inOrder(const QList<Row> &rows)
{
    QList<qsizetype> order(rows.size());
    std::iota(order.begin(), order.end(), qsizetype(0));
    const auto rank = [&](qsizetype at) {
        const Row &row = rows.at(at);
        return std::tuple(!row.order, row.order.value_or(0), !row.id, row.id.value_or(0));
    };
    std::stable_sort(order.begin(), order.end(),
                     [&](qsizetype one, qsizetype other) { return rank(one) < rank(other); });
    return order;
}

/// How reports name a row: "PageID 12", or "row 5" when it has no key.
QString rowName(QLatin1StringView key, const std::optional<int> &id, int row);

inline QString nameOf(const LegacyBook &book)
{
    return rowName(QLatin1StringView("BookID"), book.id, book.row);
}
inline QString nameOf(const LegacyPage &page)
{
    return rowName(QLatin1StringView("PageID"), page.id, page.row);
}
inline QString nameOf(const LegacyGlobalPage &page)
{
    return rowName(QLatin1StringView("PageID"), page.id, page.row);
}
inline QString nameOf(const LegacyNavigationNode &node)
{
    return rowName(QLatin1StringView("NodeID"), node.id, node.row);
}
/// Of the tables that have no key.
template <typename Row>
QString nameOf(const Row &row)
{
    return rowName({}, {}, row.row);
}
