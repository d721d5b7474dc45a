#pragma once

#include "tools/build/BuildRun.h"
#include "tools/build/Finding.h"

#include <span>

/// One kind of thing that the quality checks find: the one table of which the log, the windows and
/// the author's settings speak.
struct FindingKind
{
    QLatin1StringView code; ///< stable: "LINK01"
    Severity severity;
    CheckLevel level; ///< from which on it is looked for
    const char *englishName, *englishExplanation;

    [[nodiscard]] QString name() const; ///< a few words: "Page without a title"
    /// What it means to readers, and what to do.
    [[nodiscard]] QString explanation() const;
};

/// All of them, in the order of their codes' groups.
std::span<const FindingKind> findingKinds();
/// Null for a code that is none of them.
const FindingKind *findingKind(QStringView code);

/// "Error", "Warning", "Note" for authors; and as the report file has it, whatever the language.
QString nameOf(Severity severity);
QLatin1StringView tagOf(Severity severity);
