#pragma once

#include "components/ConversionReport.h"
#include "platform/Progress.h"
#include "startup/Program.h"

#include <QString>

#include <functional>

/// The wizard's third choice without its boxes: has the converter make the session's project from
/// a legacy book set, and what comes after that. The converter lists the project.
class LegacyMigration final
{
public:
    /// Runs work under a progress display and throws what the work throws.
    using Runner = std::function<void(const std::function<void(const Progress &)> &)>;

    explicit LegacyMigration(Program &program);

    /// Runs the converter, a second time when the author wants what can be read of a damaged
    /// database. False when no project came of it: the author has been told, nothing is left. Stop
    /// throws Unwinding. Else the session's project is the migrated one, with a category file.
    /// Raises 429 when the converter is not installed, 5 when it did not store where it wrote, 75
    /// or 76 when that is no project's folder.
    bool convert(const QString &database, const Runner &run);

    /// What came of it.
    [[nodiscard]] const ConversionReport &report() const;
    [[nodiscard]] QString logPath() const;

    /// Makes the search words. A failure or Stop is told, and the migration goes on.
    void makeSearchWords(const Runner &run);

    /// The last step: hands the project to the editors.
    void makeCurrent();

private:
    [[nodiscard]] QString reason();
    void runConverter(const QString &database, bool acceptPartly, const Runner &run);
    void removeRemains();
    [[nodiscard]] bool wantsWhatCanBeRead();
    void takeNameFromDestination();
    [[nodiscard]] QString destination();
    void requireCategories();
    [[nodiscard]] QString folder() const;

    Program &m_program;
};
