#include "reports/IdentifierIndex.h"

#include "components/Components.h"
#include "components/ServerProducts.h"
#include "reports/RowOrder.h"
#include "startup/Session.h"

#include <QHash>

#include <algorithm>

IdentifierIndex::IdentifierIndex(std::vector<SetLinks> sets, const Progress &progress)
    : m_sets(std::move(sets))
{
    collect(progress);
    const std::vector<quint32> numbers = sortTexts(progress);
    m_targets.group(numbers);
    m_references.group(numbers);
    for (quint32 identifier = 0; identifier < count(); ++identifier)
        m_states.push_back(judge(identifier));
}

/// Numbers the identifiers as they are met.
void IdentifierIndex::collect(const Progress &progress)
{
    QHash<QStringView, quint32> numbers;
    const auto take = [&](const LinkRows &rows, quint32 set, Groups &groups) {
        for (qsizetype row = 0; row < rows.size(); ++row) {
            const QStringView text = rows.identifier(row);
            const auto known = numbers.constFind(text);
            const quint32 number = known == numbers.cend() ? count() : *known;
            if (known == numbers.cend()) {
                numbers.insert(text, number);
                m_texts.push_back(text);
            }
            groups.note(number, {set, static_cast<quint32>(row)});
        }
    };
    for (quint32 set = 0; set < m_sets.size(); ++set) {
        progress.step(static_cast<int>(set), static_cast<int>(m_sets.size()), m_sets[set].set);
        take(m_sets[set].targets, set, m_targets);
        take(m_sets[set].references, set, m_references);
    }
}

/// The numbers that the identifiers have from now on, by the ones they had.
std::vector<quint32> IdentifierIndex::sortTexts(const Progress &progress)
{
    std::vector<quint32> numbers = naturalRanks(
        count(), [this](quint32 text) { return m_texts[text]; }, progress);
    std::vector<QStringView> sorted(m_texts.size());
    for (size_t text = 0; text < m_texts.size(); ++text)
        sorted[numbers[text]] = m_texts[text];
    m_texts = std::move(sorted);
    return numbers;
}

bool IdentifierIndex::leadsToPage(quint32 identifier) const
{
    const std::span<const Spot> asking = references(identifier);
    return asking.empty() ? isThere(targets(identifier).front()) : isGood(asking.front());
}

IdentifierState IdentifierIndex::judge(quint32 identifier) const
{
    const std::span<const Spot> published = targets(identifier);
    if (!leadsToPage(identifier))
        return published.empty() ? IdentifierState::NotPublished : IdentifierState::PageMissing;
    const auto isElsewhere = [&](Spot spot) {
        return !isSamePath(targetPath(spot), targetPath(published.front()));
    };
    if (std::ranges::any_of(published, isElsewhere))
        return IdentifierState::Conflict;
    return references(identifier).empty() ? IdentifierState::Unused : IdentifierState::Good;
}

void IdentifierIndex::Groups::group(const std::vector<quint32> &numbers)
{
    m_ends.assign(numbers.size(), 0);
    for (const Noted &noted : m_noted)
        ++m_ends[numbers[noted.identifier]];
    quint32 begin = 0;
    for (quint32 &end : m_ends)
        begin += std::exchange(end, begin); // their beginnings, until they are filled
    m_spots.resize(m_noted.size());
    for (const Noted &noted : m_noted)
        m_spots[m_ends[numbers[noted.identifier]]++] = noted.spot;
    m_noted = {};
}

std::span<const IdentifierIndex::Spot> IdentifierIndex::Groups::of(quint32 identifier) const
{
    const quint32 begin = identifier == 0 ? 0 : m_ends[identifier - 1];
    return std::span(m_spots).subspan(begin, m_ends[identifier] - begin);
}

IdentifierIndex readIdentifiers(Program &program, const Progress &progress)
{
    const Components &parts = program.components;
    LinkListing listing(program.files, parts.xmlCharacters, program.session.serverPath,
                        parts.serverProducts.GetAvailableProducts(), listingThreads());
    return IdentifierIndex(listing.everything(progress), progress);
}
