#include "reports/RowOrder.h"

#include "tools/NaturalOrder.h"

#include <QString>

#include <algorithm>
#include <bit>
#include <numeric>

namespace {

constexpr int betweenLooks = 1 << 14; ///< comparisons until the next look for Stop

/// Made once for a million comparisons, in one piece of memory.
class SortKeys final
{
public:
    SortKeys(qsizetype count, const RowText &text)
    {
        m_ends.reserve(static_cast<size_t>(count) + 1);
        m_ends.push_back(0);
        for (quint32 row = 0; row < count; ++row) {
            appendNaturalKey(m_keys, text(row));
            m_ends.push_back(m_keys.size());
        }
    }
    [[nodiscard]] QStringView operator[](size_t row) const
    {
        return QStringView(m_keys).sliced(m_ends[row], m_ends[row + 1] - m_ends[row]);
    }

private:
    QString m_keys;
    std::vector<qsizetype> m_ends;
};

} // namespace

RowOrder asListed(qsizetype count)
{
    RowOrder rows(static_cast<size_t>(count));
    std::iota(rows.begin(), rows.end(), 0U);
    return rows;
}

RowOrder naturallySorted(qsizetype count, const RowText &text, Qt::SortOrder order,
                         const Progress &progress)
{
    RowOrder rows = asListed(count);
    const SortKeys keys(count, text);
    const bool falling = order == Qt::DescendingOrder;
    const auto expected = static_cast<int>(rows.size() * std::bit_width(rows.size()));
    int compared = 0;
    std::stable_sort(rows.begin(), rows.end(), [&](quint32 a, quint32 b) {
        if (compared++ % betweenLooks == 0)
            progress.step(std::min(compared, expected), expected);
        return falling ? keys[b] < keys[a] : keys[a] < keys[b];
    });
    return rows;
}

std::vector<quint32> naturalRanks(qsizetype count, const RowText &text, const Progress &progress)
{
    const RowOrder rows = naturallySorted(count, text, Qt::AscendingOrder, progress);
    std::vector<quint32> ranks(rows.size());
    for (quint32 place = 0; place < rows.size(); ++place)
        ranks[rows[place]] = place;
    return ranks;
}
