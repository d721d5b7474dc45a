#include "catalogue/ProjectCatalogue.h"
#include "platform/QvError.h"

#include <QRegularExpression>

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

/// Two digits mean the years from 1930 to 2029.
int fullYear(int year, qsizetype digits)
{
    if (digits > 2)
        return year;
    return year + (year < 30 ? 2000 : 1900);
}

/// The day that three numbers in `text` name; the groups say which is which.
QDate dayIn(const QString &text, const QRegularExpression &form)
{
    const QRegularExpressionMatch match = form.match(text);
    const QString year = match.captured(u"y"_s);
    return {fullYear(year.toInt(), year.size()), match.captured(u"m"_s).toInt(),
            match.captured(u"d"_s).toInt()};
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

QDate dateOf(const QString &text, SystemLocale &locale)
{
    static const QRegularExpression iso(u"^(?<y>\\d{4})-(?<m>\\d{1,2})-(?<d>\\d{1,2})(?!\\d)"_s);
    static const QRegularExpression dots(
        u"^(?<d>\\d{1,2})\\.\\s*(?<m>\\d{1,2})\\.\\s*(?<y>\\d{4}|\\d\\d)(?!\\d)"_s);
    static const QRegularExpression slashes(
        u"^(?<m>\\d{1,2})/(?<d>\\d{1,2})/(?<y>\\d{4}|\\d\\d)(?!\\d)"_s);
    const QString date = text.trimmed();
    for (const QDate &day :
         {dayIn(date, iso), locale.fromShortDate(date), dayIn(date, dots), dayIn(date, slashes)}) {
        if (day.isValid())
            return day;
    }
    return {};
}
