#pragma once

#include "reports/LinkListing.h"
#include "reports/StoredPlace.h"
#include "startup/Program.h"

#include <array>
#include <span>

/// How an identifier stands in the whole installation.
enum class IdentifierState {
    Good,
    PageMissing,  ///< the page that links lead to is not there, or is empty
    Conflict,     ///< different places publish it
    NotPublished, ///< it is asked for only
    Unused,       ///< it is published, and nobody asks for it
};
inline constexpr std::array allIdentifierStates{
    IdentifierState::Good, IdentifierState::PageMissing, IdentifierState::Conflict,
    IdentifierState::NotPublished, IdentifierState::Unused};

/// All link identifiers of some sets, numbered in natural order: who publishes each of them, who
/// asks for it, and how that stands. Little more memory than the link files themselves.
class IdentifierIndex final
{
public:
    /// One entry of a link file.
    struct Spot
    {
        quint32 set = 0; ///< place in `sets()`
        quint32 row = 0; ///< among the set's targets or references
    };

    IdentifierIndex() = default;
    /// Throws Unwinding when Stop was pressed.
    explicit IdentifierIndex(std::vector<SetLinks> sets, const Progress &progress = {});

    // The texts of the identifiers lie in the sets.
    IdentifierIndex(IdentifierIndex &&) = default;
    IdentifierIndex &operator=(IdentifierIndex &&) = default;
    IdentifierIndex(const IdentifierIndex &) = delete;
    IdentifierIndex &operator=(const IdentifierIndex &) = delete;
    ~IdentifierIndex() = default;

    [[nodiscard]] const std::vector<SetLinks> &sets() const { return m_sets; }
    [[nodiscard]] quint32 count() const { return static_cast<quint32>(m_texts.size()); }
    [[nodiscard]] QStringView text(quint32 identifier) const { return m_texts[identifier]; }
    [[nodiscard]] IdentifierState state(quint32 identifier) const { return m_states[identifier]; }
    /// In the order of the sets and their files.
    [[nodiscard]] std::span<const Spot> targets(quint32 identifier) const
    {
        return m_targets.of(identifier);
    }
    [[nodiscard]] std::span<const Spot> references(quint32 identifier) const
    {
        return m_references.of(identifier);
    }

    // Of a spot among targets:
    [[nodiscard]] QStringView targetPath(Spot spot) const
    {
        return of(spot).targets.path(spot.row);
    }
    [[nodiscard]] bool isThere(Spot spot) const { return of(spot).targets.isGood(spot.row); }
    // Of a spot among references:
    [[nodiscard]] bool isGood(Spot spot) const { return of(spot).references.isGood(spot.row); }
    [[nodiscard]] QStringView askingPath(Spot spot) const
    {
        return of(spot).references.path(spot.row);
    }
    /// What the link report says of all references to it; of one that nobody asks for, of its first
    /// target.
    [[nodiscard]] bool leadsToPage(quint32 identifier) const;
    [[nodiscard]] const QString &setOf(Spot spot) const { return of(spot).set; }

private:
    /// Spots grouped by identifier.
    class Groups final
    {
    public:
        void note(quint32 identifier, Spot spot) { m_noted.push_back({identifier, spot}); }
        void group(const std::vector<quint32> &numbers);
        [[nodiscard]] std::span<const Spot> of(quint32 identifier) const;

    private:
        struct Noted
        {
            quint32 identifier;
            Spot spot;
        };
        std::vector<Noted> m_noted; ///< until they are grouped
        std::vector<Spot> m_spots;
        std::vector<quint32> m_ends;
    };

    [[nodiscard]] const SetLinks &of(Spot spot) const { return m_sets[spot.set]; }
    void collect(const Progress &progress);
    [[nodiscard]] std::vector<quint32> sortTexts(const Progress &progress);
    [[nodiscard]] IdentifierState judge(quint32 identifier) const;

    std::vector<SetLinks> m_sets;
    std::vector<QStringView> m_texts;
    std::vector<IdentifierState> m_states;
    Groups m_targets, m_references;
};

/// Of all projects of the server. Throws Unwinding when Stop was pressed.
IdentifierIndex readIdentifiers(Program &program, const Progress &progress);
