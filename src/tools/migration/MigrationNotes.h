#pragma once

#include "components/ConversionReport.h"

/// The tables of a legacy book set, as reports name them.
namespace LegacyTable {
inline constexpr QLatin1StringView project{"Project"};
inline constexpr QLatin1StringView books{"Books"};
inline constexpr QLatin1StringView bookCategories{"BookCategories"};
inline constexpr QLatin1StringView pages{"Pages"};
inline constexpr QLatin1StringView globalPages{"GlobalPages"};
inline constexpr QLatin1StringView quickNav{"QuickNav"};
inline constexpr QLatin1StringView searchWords{"SearchWords"};
inline constexpr QLatin1StringView images{"Images"};
inline constexpr QLatin1StringView links{"Links"};
} // namespace LegacyTable

/// What a migration has to report, collected while it runs.
class MigrationNotes final
{
public:
    void add(const QString &table, const QString &row, const QString &text);
    void add(const QList<ConversionProblem> &problems);
    /// `lost`: rows that became nothing.
    void count(QLatin1StringView table, qsizetype read, qsizetype lost = 0);

    /// Problems in the order of the tables; those of a table in the order in which they came.
    [[nodiscard]] ConversionReport report() const;

private:
    QList<ConversionCount> m_counts;
    QList<ConversionProblem> m_problems;
};
