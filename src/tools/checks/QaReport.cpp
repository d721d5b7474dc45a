#include "tools/checks/QaReport.h"

#include <QCoreApplication>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool comesFirst(const QaFinding &a, const QaFinding &b)
{
    if (a.isKnown != b.isKnown)
        return b.isKnown;
    const QString &first = a.finding.file, &second = b.finding.file;
    const bool isShared =
        first.constData() == second.constData(); // as those of one file mostly are
    if (const int files = isShared ? 0 : first.compare(second, Qt::CaseInsensitive); files != 0)
        return files < 0;
    return a.finding.line < b.finding.line;
}

} // namespace

int QaReport::knownCount() const
{
    return static_cast<int>(std::count_if(findings.begin(), findings.end(),
                                          [](const QaFinding &one) { return one.isKnown; }));
}

int QaReport::newCount() const
{
    return static_cast<int>(findings.size()) - knownCount();
}

int QaReport::newCount(Severity severity) const
{
    return static_cast<int>(
        std::count_if(findings.begin(), findings.end(), [severity](const QaFinding &one) {
            return !one.isKnown && one.finding.severity == severity;
        }));
}

QString QaReport::counts() const
{
    return QCoreApplication::translate("QaReport", "%1 new, %2 known, %3 fixed since the last run")
        .arg(newCount())
        .arg(knownCount())
        .arg(fixedCount);
}

void judge(QaReport &report, const Baseline &baseline)
{
    const QSet<QString> accepted = identitiesOf(baseline);
    const QSet<QString> off(baseline.switchedOff.begin(), baseline.switchedOff.end());
    report.findings.removeIf(
        [&off](const QaFinding &one) { return off.contains(one.finding.code); });
    for (QaFinding &one : report.findings)
        one.isKnown = !accepted.isEmpty() && accepted.contains(identityOf(one.finding));
    if (!std::is_sorted(report.findings.begin(), report.findings.end(), comesFirst))
        std::stable_sort(report.findings.begin(), report.findings.end(), comesFirst);
}

QHash<QString, int> newFindingsByFile(const QaReport &report)
{
    QHash<QString, int> counts;
    for (const QaFinding &one : report.findings) {
        if (!one.isKnown && !one.finding.code.startsWith("LINK"_L1))
            ++counts[one.finding.file.toCaseFolded()];
    }
    return counts;
}
