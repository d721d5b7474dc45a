#include "reports/LinkOrder.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

void putFirst(LinkOrder &rows, const LinkEntries &links, bool good)
{
    std::stable_partition(rows.begin(), rows.end(),
                          [&](quint32 row) { return links.isGood(row) == good; });
}

} // namespace

LinkOrder allLinks(const LinkEntries &links)
{
    return asListed(links.count());
}

LinkOrder sortedLinks(const LinkEntries &links, LinkColumn column, Qt::SortOrder order,
                      const Progress &progress)
{
    if (column == LinkColumn::Status) {
        LinkOrder rows = allLinks(links);
        putFirst(rows, links, order == Qt::DescendingOrder);
        return rows;
    }
    const auto text = [&](quint32 row) {
        return column == LinkColumn::LinkID ? links.identifierView(row) : links.storedPath(row);
    };
    return naturallySorted(links.count(), text, order, progress);
}

LinkFilter::LinkFilter(const QString &words, Which which)
    : m_words(words.simplified().split(u' ', Qt::SkipEmptyParts))
    , m_which(which)
{
}

bool LinkFilter::passesAll() const
{
    return m_words.isEmpty() && m_which == Which::All;
}

bool LinkFilter::passes(const LinkEntries &links, qsizetype index) const
{
    if (m_which != Which::All && links.isGood(index) != (m_which == Which::Good))
        return false;
    if (m_words.isEmpty())
        return true;
    const QStringView identifier = links.identifierView(index);
    const QString address = links.address(index);
    return std::all_of(m_words.begin(), m_words.end(), [&](const QString &word) {
        return identifier.contains(word, Qt::CaseInsensitive)
               || address.contains(word, Qt::CaseInsensitive);
    });
}
