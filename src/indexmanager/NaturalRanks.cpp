#include "indexmanager/NaturalRanks.h"

#include "tools/NaturalOrder.h"

#include <QString>

#include <algorithm>
#include <bit>
#include <numeric>

namespace {

constexpr int betweenLooks = 1 << 14; ///< comparisons until the next look for Stop

} // namespace

std::vector<quint32> naturalRanks(quint32 count, const std::function<QStringView(quint32)> &text,
                                  const Progress &progress)
{
    QString keys; // in one piece of memory
    std::vector<qsizetype> ends{0};
    for (quint32 index = 0; index < count; ++index) {
        appendNaturalKey(keys, text(index));
        ends.push_back(keys.size());
    }
    const auto key = [&](quint32 index) {
        return QStringView(keys).sliced(ends[index], ends[index + 1] - ends[index]);
    };
    std::vector<quint32> order(count);
    std::iota(order.begin(), order.end(), 0U);
    const auto expected = static_cast<int>(count) * static_cast<int>(std::bit_width(count));
    int compared = 0;
    std::stable_sort(order.begin(), order.end(), [&](quint32 a, quint32 b) {
        if (compared++ % betweenLooks == 0)
            progress.step(std::min(compared, expected), expected);
        return key(a) < key(b);
    });
    std::vector<quint32> ranks(count);
    for (quint32 place = 0; place < count; ++place)
        ranks[order[place]] = place;
    return ranks;
}
