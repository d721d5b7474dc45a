#pragma once

#include "platform/FileSystem.h"
#include "platform/Progress.h"
#include "tools/build/BuildInput.h"
#include "tools/build/BuildRun.h"
#include "tools/build/ScannedPages.h"
#include "tools/checks/BaselineFile.h"
#include "tools/checks/FindingList.h"

#include <optional>
#include <unordered_set>

class LinkCheck;
struct QaReport;

/// Looks a project's pages, books and files over and writes the findings: "<project>_QA_Log.txt"
/// inside the project folder and "QV_QAReport.xml", which windows read. Findings that the author
/// accepted ("QV_QABaseline.xml") count as known; kinds of findings that are switched off there are
/// left out.
class QualityChecks final
{
public:
    QualityChecks(FileSystem &files, const BuildInput &input, const ScannedPages &pages,
                  const LinkCheck &links, CheckLevel level);

    /// Everything that does not depend on what the tools of this build make. Raises 75 for a
    /// baseline that cannot be read (what an author accepted is not told as new) and
    /// `Unwinding{Stopped}`. Called once.
    void look(const Progress &progress);
    /// Looks at what the tools left, then writes. The summary begins with the counts: new, known,
    /// fixed since the last run; the result lists the new ones. Raises QvError.
    [[nodiscard]] ToolReport finish();

private:
    using Identities = std::unordered_set<size_t>;

    [[nodiscard]] Identities foundBefore() const;
    [[nodiscard]] QString summaryOf(const QaReport &found) const;
    void writeLog(const ToolReport &report, const QaReport &found) const;

    FileSystem &m_files;
    const BuildInput &m_input;
    const ScannedPages &m_pages;
    const LinkCheck &m_links;
    const CheckLevel m_level;
    Baseline m_baseline;
    std::optional<FindingList> m_findings;
    Identities m_before; ///< findings of the run before that this one looks for as well
};
