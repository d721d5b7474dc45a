#pragma once

#include "components/ConversionReport.h"
#include "dbtoxml/DatabaseFile.h"
#include "dbtoxml/LegacySchema.h"

#include <QDateTime>
#include <QList>

#include <array>

/// What was found wrong in a database.
struct LegacyFindings
{
    QList<ConversionProblem> odd;     ///< read whole, but not what it should be
    QList<ConversionProblem> damaged; ///< not read, or not read whole
};

/// The rows of a table of a legacy book set, by the names of its columns. What is wrong in them
/// goes to the findings.
class LegacyTableReader final
{
public:
    /// `rule` is of a table that `LegacySchema::check` found. Raises EarlyEnd when it is
    /// unreadable.
    LegacyTableReader(const DatabaseFile &file, const LegacyTableRule &rule,
                      LegacyFindings &findings);

    /// False at the end; rows that did not come are a finding then.
    bool next();
    [[nodiscard]] int row() const { return m_table->fetched(); } ///< from 1

    /// One line; null is empty.
    [[nodiscard]] QString text(QLatin1StringView column);
    [[nodiscard]] std::optional<int> number(QLatin1StringView column);
    [[nodiscard]] std::optional<QDateTime> date(QLatin1StringView column);
    /// Every character as it is stored.
    [[nodiscard]] std::optional<QString> page(QLatin1StringView column);
    [[nodiscard]] std::optional<QByteArray> bytes(QLatin1StringView column);

private:
    [[nodiscard]] int place(QLatin1StringView column) const;
    [[nodiscard]] std::optional<QByteArray> raw(QLatin1StringView column);
    [[nodiscard]] QString rowName() const;
    void compareWithPromise();
    void noteUndecodable(QLatin1StringView column);
    void note(QList<ConversionProblem> &list, const QString &text) const;

    QString m_path;
    const LegacyTableRule &m_rule;
    LegacyFindings &m_findings;
    std::unique_ptr<DatabaseTable> m_table;
    std::array<int, 7> m_places{};
};
