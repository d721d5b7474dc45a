#include "tools/migration/MigrationNotes.h"

#include "components/NameRules.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::array tables{
    LegacyTable::project,     LegacyTable::books,       LegacyTable::bookCategories,
    LegacyTable::pages,       LegacyTable::globalPages, LegacyTable::quickNav,
    LegacyTable::searchWords, LegacyTable::images,      LegacyTable::links};

/// Before all tables: the database as a whole.
auto placeOf(const QString &table)
{
    const auto found = std::find(tables.begin(), tables.end(), table);
    return table.isEmpty() ? -1 : found - tables.begin();
}

} // namespace

void MigrationNotes::add(const QString &table, const QString &row, const QString &text)
{
    m_problems.append({table, row, NameRules::withoutControls(text)});
}

void MigrationNotes::add(const QList<ConversionProblem> &problems)
{
    for (const ConversionProblem &problem : problems)
        add(problem.table, problem.row, problem.text);
}

void MigrationNotes::count(QLatin1StringView table, qsizetype read, qsizetype lost)
{
    m_counts.append({table, static_cast<int>(read), static_cast<int>(read - lost)});
}

ConversionReport MigrationNotes::report() const
{
    ConversionReport report;
    report.counts = m_counts;
    report.problems = m_problems;
    const auto byTable = [](const auto &one, const auto &other) {
        return placeOf(one.table) < placeOf(other.table);
    };
    std::stable_sort(report.counts.begin(), report.counts.end(), byTable);
    std::stable_sort(report.problems.begin(), report.problems.end(), byTable);
    return report;
}
