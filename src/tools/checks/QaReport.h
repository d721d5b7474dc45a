#pragma once

#include "tools/build/BuildRun.h"
#include "tools/build/Finding.h"
#include "tools/checks/BaselineFile.h"

#include <QHash>
#include <QList>

#include <optional>

class FileSystem;

struct QaFinding
{
    Finding finding;
    bool isKnown = false; ///< the author accepted it
};

/// What the last quality checks of a project found.
struct QaReport
{
    CheckLevel level = CheckLevel::Everything;
    QList<QaFinding> findings; ///< new ones first, then by file and line
    int fixedCount = 0;        ///< of the run before, those that are gone

    [[nodiscard]] int knownCount() const;
    [[nodiscard]] int newCount() const;
    [[nodiscard]] int newCount(Severity severity) const;
    /// "3 new, 12 known, 2 fixed since the last run"
    [[nodiscard]] QString counts() const;
};

/// Says of each finding whether it is new, leaves out the kinds that are switched off, and puts
/// them in order.
void judge(QaReport &report, const Baseline &baseline);

/// The bytes of "QV_QAReport.xml", from which windows and other programs read it.
QByteArray qaReportFile(const QString &project, const QaReport &report);
QString qaReportPath(const QString &projectFolder);

/// The report as it was written. Nothing when the checks never ran; raises 75 when the file is
/// none of ours.
std::optional<QaReport> readWrittenQaReport(FileSystem &files, const QString &projectFolder);
/// The same, judged by what the author decided since. Raises 75 for an unreadable baseline too.
std::optional<QaReport> readQaReport(FileSystem &files, const QString &projectFolder);

/// How many new findings each file has, by its folded path relative to the project folder. Links
/// are left out: the tree counts the broken ones itself.
QHash<QString, int> newFindingsByFile(const QaReport &report);
