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

/// Numbers findings by what makes them the same in another run.
class IdentityNumbers final
{
public:
    size_t of(const Finding &finding)
    {
        if (m_file != finding.file) { // most have the file of the one before
            m_file = finding.file;
            m_folded = m_file.toCaseFolded();
        }
        return qHashMulti(0, finding.code, m_folded, finding.subject);
    }

private:
    QString m_file, m_folded;
};

int countGone(std::unordered_set<size_t> before, const QaReport &now)
{
    IdentityNumbers numbers;
    for (const QaFinding &one : now.findings)
        before.erase(numbers.of(one.finding));
    return static_cast<int>(before.size());
}

/// The report of the run before; an empty one when there is none that could be read.
QaReport reportBefore(FileSystem &files, const QString &folder)
{
    std::optional<QaReport> report;
    trap([](const QvError &) {}, [&] { report = readWrittenQaReport(files, folder); });
    return report.value_or(QaReport());
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

} // namespace

QualityChecks::QualityChecks(FileSystem &files, const BuildInput &input, const ScannedPages &pages,
                             const LinkCheck &links, CheckLevel level)
    : m_files(files)
    , m_input(input)
    , m_pages(pages)
    , m_links(links)
    , m_level(level)
{
}

void QualityChecks::look(const Progress &progress)
{
    m_baseline = BaselineFile(m_files, m_input.folder).read();
    FindingList &list = m_findings.emplace(m_baseline.switchedOff, m_level);
    checkBooks(m_input, m_pages, m_links, list);
    checkPages(m_input, m_pages, m_links, list, progress);
    if (list.wants("ASSET02"_L1))
        checkUnusedFiles(m_input, m_pages, m_links, list);
    m_before = foundBefore();
}

ToolReport QualityChecks::finish()
{
    if (m_level == CheckLevel::Everything)
        checkData(m_files, m_input, m_pages, *m_findings);

    QaReport found{.level = m_level, .findings = {}};
    const QList<Finding> all = m_findings->take();
    found.findings.reserve(all.size());
    for (const Finding &finding : all)
        found.findings.append({finding});
    judge(found, m_baseline);
    found.fixedCount = countGone(std::move(m_before), found);

    const ToolReport report{outcomeOf(found), summaryOf(found), findingsOf(found, false)};
    writeLog(report, found);
    m_files.replaceFile(qaReportPath(m_input.folder), qaReportFile(m_input.project, found),
                        {.throughReadOnly = true});
    return report;
}

QualityChecks::Identities QualityChecks::foundBefore() const
{
    Identities identities;
    IdentityNumbers numbers;
    const QaReport report = reportBefore(m_files, m_input.folder);
    for (const QaFinding &one : report.findings) {
        const FindingKind *const kind = findingKind(one.finding.code);
        if (kind != nullptr && m_findings->wants(kind->code))
            identities.insert(numbers.of(one.finding));
    }
    return identities;
}

QString QualityChecks::summaryOf(const QaReport &found) const
{
    return tr("%1; new errors: %2, warnings: %3, notes: %4. Looked at: %5, %6.")
        .arg(found.counts())
        .arg(found.newCount(Severity::Error))
        .arg(found.newCount(Severity::Warning))
        .arg(found.newCount(Severity::Note))
        .arg(counted(qsizetype(m_pages.pages().size()), tr("1 page or style sheet"),
                     tr("%1 pages and style sheets")),
             counted(m_links.count(), tr("1 link"), tr("%1 links")));
}

void QualityChecks::writeLog(const ToolReport &report, const QaReport &found) const
{
    ToolReport log = report;
    const QList<Finding> known = findingsOf(found, true);
    for (const Finding &finding : known) {
        log.findings.append(finding);
        log.findings.last().text += tr(" (known)");
    }
    m_files.replaceFile(m_input.folder + m_input.project + u"_QA_Log.txt"_s,
                        logFile(tr("Quality checks"), log), {.throughReadOnly = true});
}
