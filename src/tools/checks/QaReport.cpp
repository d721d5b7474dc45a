#include "tools/checks/QaReport.h"

#include <QCoreApplication>

#include <algorithm>
#include <compare>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

/// The files of all findings in the order of their names; each is compared once, not once for each
/// of its findings.
QHash<QString, qsizetype> filesInOrder(const QList<QaFinding> &findings)
{
    QHash<QString, qsizetype> places;
    for (const QaFinding &one : findings)
        places.insert(one.finding.file, 0);
    QStringList files = places.keys();
    files.sort();
    std::stable_sort(files.begin(), files.end(), [](const QString &a, const QString &b) {
        return a.compare(b, Qt::CaseInsensitive) < 0;
    });
    for (qsizetype place = 0; place < files.size(); ++place)
        places[files[place]] = place;
    return places;
}

/// New ones first, then by file and line.
void sort(QList<QaFinding> &findings)
{
    struct Place
    {
        bool isKnown;
        qsizetype file;
        int line;
        qsizetype finding; ///< the last to count, so that the order of the checks stays
        auto operator<=>(const Place &) const = default;
    };
    const QHash<QString, qsizetype> files = filesInOrder(findings);
    std::vector<Place> order;
    order.reserve(static_cast<size_t>(findings.size()));
    for (qsizetype at = 0; at < findings.size(); ++at) {
        const QaFinding &one = findings[at];
        order.push_back({one.isKnown, files[one.finding.file], one.finding.line, at});
    }
    std::sort(order.begin(), order.end());
    QList<QaFinding> sorted;
    sorted.reserve(findings.size());
    for (const Place &place : order)
        sorted.append(std::move(findings[place.finding]));
    findings = std::move(sorted);
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
    sort(report.findings);
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
