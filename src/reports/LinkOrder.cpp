#include "reports/LinkOrder.h"

#include "tools/NaturalOrder.h"

#include <algorithm>
#include <bit>
#include <numeric>

using namespace Qt::StringLiterals;

namespace {

constexpr int betweenLooks = 1 << 14; ///< comparisons until the next look for Stop

void putFirst(LinkOrder &rows, const LinkEntries &links, bool good)
{
    std::stable_partition(rows.begin(), rows.end(),
                          [&](quint32 row) { return links.isGood(row) == good; });
}

/// Made once for a million comparisons, in one piece of memory.
class SortKeys final
{
public:
    SortKeys(const LinkEntries &links, LinkColumn column)
    {
        m_ends.reserve(static_cast<std::size_t>(links.count()) + 1);
        m_ends.push_back(0);
        for (qsizetype index = 0; index < links.count(); ++index) {
            appendNaturalKey(m_keys, column == LinkColumn::LinkID ? links.identifierView(index)
                                                                  : links.storedPath(index));
            m_ends.push_back(m_keys.size());
        }
    }
    [[nodiscard]] QStringView operator[](std::size_t index) const
    {
        return QStringView(m_keys).sliced(m_ends[index], m_ends[index + 1] - m_ends[index]);
    }

private:
    QString m_keys;
    std::vector<qsizetype> m_ends;
};

} // namespace

LinkOrder allLinks(const LinkEntries &links)
{
    LinkOrder rows(static_cast<std::size_t>(links.count()));
    std::iota(rows.begin(), rows.end(), 0U);
    return rows;
}

LinkOrder sortedLinks(const LinkEntries &links, LinkColumn column, Qt::SortOrder order,
                      const Progress &progress)
{
    LinkOrder rows = allLinks(links);
    const bool falling = order == Qt::DescendingOrder;
    if (column == LinkColumn::Status) {
        putFirst(rows, links, falling);
        return rows;
    }
    const SortKeys keys(links, column);
    const auto expected = static_cast<int>(rows.size() * std::bit_width(rows.size()));
    int compared = 0;
    std::stable_sort(rows.begin(), rows.end(), [&](quint32 a, quint32 b) {
        if (compared++ % betweenLooks == 0)
            progress.step(std::min(compared, expected), expected);
        return falling ? keys[b] < keys[a] : keys[a] < keys[b];
    });
    return rows;
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
