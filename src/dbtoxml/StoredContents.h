#pragma once

#include "dbtoxml/LegacyTableReader.h"
#include "tools/migration/LegacyBookSet.h"

/// What pages and images hold, read from the database once more, row by row, so that only one of
/// them is in memory at a time.
class StoredContents final : public LegacyContents
{
public:
    /// `set` was read from `file`.
    StoredContents(const DatabaseFile &file, const LegacyBookSet &set);

    void pages(const TakeText &take) override;
    void globalPages(const TakeText &take) override;
    void images(const TakeBytes &take) override;
    [[nodiscard]] QList<ConversionProblem> problems() const override;
    /// Those of the problems that leave something out.
    [[nodiscard]] const QList<ConversionProblem> &damaged() const { return m_findings.damaged; }

private:
    using TakeRow = std::function<void(qsizetype at, LegacyTableReader &table)>;
    void rows(const LegacyTableRule &rule, qsizetype count, const TakeRow &take);

    const DatabaseFile &m_file;
    const LegacyBookSet &m_set;
    LegacyFindings m_findings;
};
