#include "catalogue/ProjectCatalogue.h"
#include "platform/QvError.h"

#include <algorithm>
#include <numeric>

using namespace Qt::StringLiterals;

namespace {

constexpr int subscriptOutOfRange = 9;

QvError sortFailed(int number)
{
    return {number, u"SortProjectOnDates"_s,
            u"Error (%1) in procedure SortProjectOnDates of Module qvDeveloper"_s.arg(number)};
}

template <typename List>
List inOrder(const List &list, const QList<qsizetype> &order)
{
    List sorted;
    sorted.reserve(list.size());
    for (const qsizetype index : order)
        sorted.append(list.at(index));
    return sorted;
}

} // namespace

void SortProjectOnDates(QStringList &names, QList<QDate> &dates)
{
    if (names.size() != dates.size())
        throw sortFailed(subscriptOutOfRange);
    if (names.isEmpty())
        return;

    QList<qsizetype> order(names.size());
    std::iota(order.begin(), order.end(), 0);
    const auto newer = [&](qsizetype a, qsizetype b) { return dates.at(a) > dates.at(b); };
    std::stable_sort(order.begin() + 1, order.end(), newer);
    names = inOrder(names, order);
    dates = inOrder(dates, order);
}
