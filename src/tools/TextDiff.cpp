#include "tools/TextDiff.h"

#include <QHash>

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

namespace {

constexpr int mostChanges = 2000; // lines; more would take too long

/// Lines as numbers, equal ones as the same.
struct Numbered
{
    std::vector<int> left, right;
};

Numbered numbered(const QStringList &left, const QStringList &right)
{
    QHash<QString, int> known;
    Numbered lines;
    const auto number = [&](const QStringList &texts, std::vector<int> &numbers) {
        numbers.reserve(static_cast<size_t>(texts.size()));
        for (const QString &text : texts) {
            if (const auto seen = known.constFind(text); seen != known.constEnd())
                numbers.push_back(*seen);
            else
                numbers.push_back(*known.insert(text, static_cast<int>(known.size())));
        }
    };
    number(left, lines.left);
    number(right, lines.right);
    return lines;
}

/// The shortest way from one text to the other (Myers' algorithm): for each number of changes, how
/// far every diagonal comes.
class Path final
{
public:
    Path(const int *left, int leftSize, const int *right, int rightSize)
        : m_left(left)
        , m_right(right)
        , m_leftSize(leftSize)
        , m_rightSize(rightSize)
    {
    }

    /// The pairs of equal lines in order; nothing when there are too many changes.
    [[nodiscard]] std::optional<std::vector<std::pair<int, int>>> matches()
    {
        for (int changes = 0; changes <= mostChanges; ++changes) {
            if (advance(changes))
                return walkBack(changes);
        }
        return {};
    }

private:
    // Diagonal k holds the points where left - right = k; after so many changes its reach is kept
    // at place k + changes.
    [[nodiscard]] int reach(int changes, int k) const
    {
        const std::vector<int> &row = m_reach[static_cast<size_t>(changes)];
        const int place = k + changes;
        return place < 0 || place >= static_cast<int>(row.size()) ? -1
                                                                  : row[static_cast<size_t>(place)];
    }

    /// Whether the best way onto diagonal k takes a line of the right, rather than one of the left.
    [[nodiscard]] bool takesRight(int changes, int k) const
    {
        return k == -changes
               || (k != changes && reach(changes - 1, k - 1) < reach(changes - 1, k + 1));
    }

    [[nodiscard]] int startOn(int changes, int k) const
    {
        if (changes == 0)
            return 0;
        return takesRight(changes, k) ? reach(changes - 1, k + 1) : reach(changes - 1, k - 1) + 1;
    }

    bool advance(int changes)
    {
        std::vector<int> row(static_cast<size_t>(2 * changes + 1), -1);
        bool arrived = false;
        for (int k = -changes; k <= changes && !arrived; k += 2) {
            int x = startOn(changes, k);
            while (x < m_leftSize && x - k < m_rightSize && m_left[x] == m_right[x - k])
                ++x;
            row[static_cast<size_t>(k + changes)] = x;
            arrived = x >= m_leftSize && x - k >= m_rightSize;
        }
        m_reach.push_back(std::move(row));
        return arrived;
    }

    [[nodiscard]] std::vector<std::pair<int, int>> walkBack(int changes) const
    {
        std::vector<std::pair<int, int>> pairs;
        int x = m_leftSize;
        int k = m_leftSize - m_rightSize;
        for (; changes >= 0; --changes) {
            const int start = startOn(changes, k);
            for (; x > start; --x)
                pairs.emplace_back(x - 1, x - 1 - k);
            if (changes == 0)
                break;
            const bool right = takesRight(changes, k);
            x = right ? start : start - 1;
            k += right ? 1 : -1;
        }
        std::reverse(pairs.begin(), pairs.end());
        return pairs;
    }

    const int *m_left, *m_right;
    int m_leftSize, m_rightSize;
    std::vector<std::vector<int>> m_reach;
};

/// What lies between two equal lines: side by side as far as both have lines.
void appendDifference(QList<DiffRow> &rows, int left, int leftEnd, int right, int rightEnd)
{
    while (left < leftEnd && right < rightEnd)
        rows.append({DiffRow::Kind::Changed, left++, right++});
    while (left < leftEnd)
        rows.append({DiffRow::Kind::Removed, left++, -1});
    while (right < rightEnd)
        rows.append({DiffRow::Kind::Added, -1, right++});
}

} // namespace

QList<DiffRow> compareLines(const QStringList &left, const QStringList &right)
{
    const Numbered lines = numbered(left, right);
    const int leftSize = static_cast<int>(left.size());
    const int rightSize = static_cast<int>(right.size());
    int head = 0;
    while (head < qMin(leftSize, rightSize)
           && lines.left[static_cast<size_t>(head)] == lines.right[static_cast<size_t>(head)])
        ++head;
    int tail = 0;
    while (tail < qMin(leftSize, rightSize) - head
           && lines.left[static_cast<size_t>(leftSize - 1 - tail)]
                  == lines.right[static_cast<size_t>(rightSize - 1 - tail)])
        ++tail;

    QList<DiffRow> rows;
    for (int line = 0; line < head; ++line)
        rows.append({DiffRow::Kind::Same, line, line});
    Path path(lines.left.data() + head, leftSize - head - tail, lines.right.data() + head,
              rightSize - head - tail);
    int l = head;
    int r = head;
    for (const auto &[x, y] : path.matches().value_or(std::vector<std::pair<int, int>>())) {
        appendDifference(rows, l, head + x, r, head + y);
        rows.append({DiffRow::Kind::Same, head + x, head + y});
        l = head + x + 1;
        r = head + y + 1;
    }
    appendDifference(rows, l, leftSize - tail, r, rightSize - tail);
    for (int line = tail; line > 0; --line)
        rows.append({DiffRow::Kind::Same, leftSize - line, rightSize - line});
    return rows;
}
