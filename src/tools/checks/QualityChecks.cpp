#include "tools/checks/QualityChecks.h"

#include "platform/QvError.h"
#include "resources/Counted.h"
#include "tools/checks/AssetChecks.h"
#include "tools/checks/BookChecks.h"
#include "tools/checks/DataChecks.h"
#include "tools/checks/FindingList.h"
#include "tools/checks/PageChecks.h"
#include "tools/checks/QaReport.h"
#include "tools/links/LinkCheck.h"

#include <QCoreApplication>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("QualityChecks", text);
}

/// What the run before found and this one looked for as well, but did not find.
int fixedSince(const QaReport &before, const QaReport &now, const FindingList &list)
{
    QSet<QString> left;
    for (const QaFinding &one : now.findings)
        left.insert(identityOf(one.finding));
    QSet<QString> gone;
    for (const QaFinding &one : before.findings) {
        const FindingKind *const kind = findingKind(one.finding.code);
        if (kind == nullptr || !list.wants(kind->code))
            continue;
        if (const QString identity = identityOf(one.finding); !left.contains(identity))
            gone.insert(identity);
    }
    return static_cast<int>(gone.size());
}

/// The report of the run before; an empty one when there is none that could be read.
QaReport reportBefore(FileSystem &files, const QString &folder)
{
    std::optional<QaReport> report;
    trap([](const QvError &) {}, [&] { report = readWrittenQaReport(files, folder); });
    return report.value_or(QaReport());
}

QString summaryOf(const QaReport &report, const ScannedPages &pages, const LinkCheck &links)
{
    return tr("%1; new errors: %2, warnings: %3, notes: %4. Looked at: %5, %6.")
        .arg(report.counts())
        .arg(report.newCount(Severity::Error))
        .arg(report.newCount(Severity::Warning))
        .arg(report.newCount(Severity::Note))
        .arg(counted(qsizetype(pages.pages().size()), tr("1 page or style sheet"),
                     tr("%1 pages and style sheets")),
             counted(links.count(), tr("1 link"), tr("%1 links")));
}

ToolReport::Outcome outcomeOf(const QaReport &report)
{
    return report.newCount(Severity::Error) + report.newCount(Severity::Warning) > 0
               ? ToolReport::Outcome::Warnings
               : ToolReport::Outcome::Good;
}

QList<Finding> findingsOf(const QaReport &report, bool known)
{
    QList<Finding> findings;
    for (const QaFinding &one : report.findings) {
        if (one.isKnown == known)
            findings.append(one.finding);
    }
    return findings;
}

void writeLog(FileSystem &files, const BuildInput &input, const ToolReport &report,
              const QaReport &found)
{
    ToolReport log = report;
    for (const Finding &known : findingsOf(found, true)) {
        log.findings.append(known);
        log.findings.last().text += tr(" (known)");
    }
    files.replaceFile(input.folder + input.project + u"_QA_Log.txt"_s,
                      logFile(tr("Quality checks"), log), {.throughReadOnly = true});
}

} // namespace

ToolReport checkQuality(FileSystem &files, const BuildInput &input, const ScannedPages &pages,
                        const LinkCheck &check, CheckLevel level, const Progress &progress)
{
    const Baseline baseline = BaselineFile(files, input.folder).read();
    FindingList list(baseline.switchedOff, level);
    checkBooks(input, pages, check, list);
    checkPages(input, pages, check, list, progress);
    if (list.wants("ASSET02"_L1))
        checkUnusedFiles(input, pages, check, list);
    if (level == CheckLevel::Everything)
        checkData(files, input, pages, list);

    QaReport found{.level = level, .findings = {}};
    const QList<Finding> all = list.take();
    for (const Finding &finding : all)
        found.findings.append({finding});
    judge(found, baseline);
    found.fixedCount = fixedSince(reportBefore(files, input.folder), found, list);

    const ToolReport report{outcomeOf(found), summaryOf(found, pages, check),
                            findingsOf(found, false)};
    writeLog(files, input, report, found);
    files.replaceFile(qaReportPath(input.folder), qaReportFile(input.project, found),
                      {.throughReadOnly = true});
    return report;
}
