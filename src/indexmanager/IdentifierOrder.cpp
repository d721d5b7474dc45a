#include "indexmanager/IdentifierOrder.h"

#include <algorithm>

using Spot = IdentifierIndex::Spot;

namespace {

QStringView shownPath(const IdentifierIndex &index, quint32 identifier)
{
    const auto targets = index.targets(identifier);
    return targets.empty() ? QStringView() : index.targetPath(targets.front());
}

std::vector<quint32> setRanks(const IdentifierIndex &index, const Progress &progress)
{
    const std::vector<quint32> ranks = naturalRanks(
        static_cast<qsizetype>(index.sets().size()),
        [&](quint32 set) -> QStringView { return index.sets()[set].set; }, progress);
    std::vector<quint32> keys;
    for (quint32 identifier = 0; identifier < index.count(); ++identifier) {
        const auto targets = index.targets(identifier);
        keys.push_back(targets.empty() ? 0 : 1 + ranks[targets.front().set]);
    }
    return keys;
}

/// What the identifiers are sorted by, as numbers.
std::vector<quint32> sortKeys(const IdentifierIndex &index, IdentifierColumn column,
                              const Progress &progress)
{
    if (column == IdentifierColumn::Set)
        return setRanks(index, progress);
    std::vector<quint32> keys(index.count());
    for (quint32 identifier = 0; identifier < index.count(); ++identifier) {
        keys[identifier] = column == IdentifierColumn::State
                               ? static_cast<quint32>(index.state(identifier))
                           : column == IdentifierColumn::References
                               ? static_cast<quint32>(index.references(identifier).size())
                               : identifier;
    }
    return keys;
}

} // namespace

QString publishingSet(const IdentifierIndex &index, quint32 identifier)
{
    const auto targets = index.targets(identifier);
    return targets.empty() ? QString() : index.setOf(targets.front());
}

QString publishedPlace(const IdentifierIndex &index, quint32 identifier)
{
    return placeInSet(publishingSet(index, identifier), shownPath(index, identifier));
}

RowOrder sortedIdentifiers(const IdentifierIndex &index, IdentifierColumn column,
                           Qt::SortOrder order, const Progress &progress)
{
    if (column == IdentifierColumn::Place)
        return naturallySorted(
            index.count(), [&](quint32 identifier) { return shownPath(index, identifier); }, order,
            progress);
    RowOrder sorted = asListed(index.count());
    const std::vector<quint32> keys = sortKeys(index, column, progress);
    const bool falling = order == Qt::DescendingOrder;
    std::stable_sort(sorted.begin(), sorted.end(), [&](quint32 a, quint32 b) {
        return falling ? keys[b] < keys[a] : keys[a] < keys[b];
    });
    return sorted;
}

IdentifierFilter::IdentifierFilter(const QString &words, std::optional<IdentifierState> state)
    : m_words(words.simplified().split(u' ', Qt::SkipEmptyParts))
    , m_state(state)
{
}

bool IdentifierFilter::passes(const IdentifierIndex &index, quint32 identifier) const
{
    if (m_state && index.state(identifier) != *m_state)
        return false;
    const auto targets = index.targets(identifier);
    const auto holds = [&](const QString &word) {
        const auto isIn = [&](QStringView text) {
            return text.contains(word, Qt::CaseInsensitive);
        };
        const auto publishes = [&](Spot spot) { return isIn(index.targetPath(spot)); };
        const auto asks = [&](Spot spot) { return isIn(index.askingPath(spot)); };
        return isIn(index.text(identifier))
               || (targets.empty() ? std::ranges::any_of(index.references(identifier), asks)
                                   : std::ranges::any_of(targets, publishes));
    };
    return std::ranges::all_of(m_words, holds);
}
