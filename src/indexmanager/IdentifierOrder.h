#pragma once

#include "reports/IdentifierIndex.h"
#include "reports/RowOrder.h"

#include <QStringList>

#include <optional>

/// The columns of the list of identifiers.
enum class IdentifierColumn { Identifier, State, Set, Place, References };
inline constexpr int identifierColumns = 5;

/// The set and the place in it that an identifier is shown with: the first that publishes it. ""
/// when nobody does.
QString publishingSet(const IdentifierIndex &index, quint32 identifier);
QString publishedPlace(const IdentifierIndex &index, quint32 identifier);

/// All identifiers in the order of one column; equal ones in natural order. Throws Unwinding when
/// Stop was pressed.
RowOrder sortedIdentifiers(const IdentifierIndex &index, IdentifierColumn column,
                           Qt::SortOrder order, const Progress &progress = {});

/// Which identifiers are shown.
class IdentifierFilter final
{
public:
    IdentifierFilter() = default;
    /// `words` are separated by blanks; each must stand in the identifier or in the path of a page
    /// that publishes it (when there is none: that asks for it), its set included, in any letter
    /// case.
    IdentifierFilter(const QString &words, std::optional<IdentifierState> state);

    [[nodiscard]] bool passesAll() const { return m_words.isEmpty() && !m_state; }
    [[nodiscard]] bool passes(const IdentifierIndex &index, quint32 identifier) const;

private:
    QStringList m_words;
    std::optional<IdentifierState> m_state;
};
