#include "controls/build/FindingsModel.h"

#include "resources/Icons.h"
#include "resources/PlainTip.h"
#include "tools/checks/FindingKinds.h"

#include <algorithm>
#include <numeric>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

QString kindName(const QString &code)
{
    const FindingKind *const kind = findingKind(code);
    return kind == nullptr ? code : kind->name();
}

QIcon iconOf(Severity severity)
{
    switch (severity) {
    case Severity::Error:
        return icon("error"_L1);
    case Severity::Warning:
        return icon("warning"_L1);
    case Severity::Note:
        break;
    }
    return icon("information"_L1);
}

QSet<QString> codesNamed(const QString &text)
{
    QSet<QString> codes;
    for (const FindingKind &kind : findingKinds()) {
        const QString shown = kind.code + u' ' + kind.name();
        if (shown.contains(text, Qt::CaseInsensitive))
            codes.insert(kind.code);
    }
    return codes;
}

} // namespace

void FindingsModel::setReport(QaReport report)
{
    m_report = std::move(report);
    showRows(allRows());
}

void FindingsModel::judgeBy(const Baseline &baseline)
{
    judge(m_report, baseline);
    showRows(allRows());
}

/// What was left out for a part of the text stays left out for all of it.
void FindingsModel::setFilter(const FindingsFilter &filter)
{
    if (filter == m_filter)
        return;
    const bool isNarrower = filter.text.startsWith(m_filter.text, Qt::CaseInsensitive)
                            && filter.least >= m_filter.least
                            && (filter.known == m_filter.known || !m_filter.known);
    m_filter = filter;
    m_codes = codesNamed(filter.text);
    showRows(isNarrower ? m_rows : allRows());
}

const QaFinding &FindingsModel::finding(int row) const
{
    return m_report.findings.at(m_rows.at(static_cast<size_t>(row)));
}

std::vector<int> FindingsModel::allRows() const
{
    std::vector<int> rows(static_cast<size_t>(m_report.findings.size()));
    std::iota(rows.begin(), rows.end(), 0);
    return rows;
}

void FindingsModel::showRows(std::vector<int> candidates)
{
    beginResetModel();
    m_rows = std::move(candidates);
    std::erase_if(m_rows, [this](int row) { return !isShown(m_report.findings.at(row)); });
    std::stable_sort(m_rows.begin(), m_rows.end(), [this](int a, int b) {
        return comesBefore(m_report.findings.at(a), m_report.findings.at(b));
    });
    endResetModel();
}

bool FindingsModel::isShown(const QaFinding &one) const
{
    if (one.finding.severity < m_filter.least || (m_filter.known && one.isKnown != *m_filter.known))
        return false;
    return m_filter.text.isEmpty() || m_codes.contains(one.finding.code)
           || one.finding.file.contains(m_filter.text, Qt::CaseInsensitive)
           || one.finding.text.contains(m_filter.text, Qt::CaseInsensitive);
}

bool FindingsModel::comesBefore(const QaFinding &first, const QaFinding &second) const
{
    const bool isUp = m_order == Qt::AscendingOrder;
    const QaFinding &a = isUp ? first : second;
    const QaFinding &b = isUp ? second : first;
    switch (m_sortColumn) {
    case NoColumn:
        return std::pair(a.isKnown, b.finding.severity) < std::pair(b.isKnown, a.finding.severity);
    case SeverityColumn:
        return a.finding.severity > b.finding.severity; // the worst on top
    case StateColumn:
        return b.isKnown && !a.isKnown;
    case LineColumn:
        return a.finding.line < b.finding.line;
    case KindColumn:
        return a.finding.code < b.finding.code;
    default:
        return text(a, m_sortColumn).compare(text(b, m_sortColumn), Qt::CaseInsensitive) < 0;
    }
}

void FindingsModel::sort(int column, Qt::SortOrder order)
{
    m_sortColumn = column;
    m_order = column < 0 ? Qt::AscendingOrder : order;
    showRows(column < 0 ? allRows() : m_rows);
}

int FindingsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int FindingsModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : columns;
}

QString FindingsModel::text(const QaFinding &one, int column) const
{
    switch (column) {
    case SeverityColumn:
        return nameOf(one.finding.severity);
    case StateColumn:
        return one.isKnown ? tr("Known") : tr("New");
    case FileColumn:
        return one.finding.file.isEmpty() ? tr("(the project)") : one.finding.file;
    case LineColumn:
        return one.finding.line > 0 ? QString::number(one.finding.line) : QString();
    case KindColumn:
        return kindName(one.finding.code);
    default:
        return one.finding.text;
    }
}

QVariant FindingsModel::data(const QModelIndex &index, int role) const
{
    const QaFinding &one = finding(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return text(one, index.column());
    case Qt::ToolTipRole:
        return plainTip(text(one, index.column()));
    case Qt::DecorationRole:
        return index.column() == SeverityColumn ? QVariant(iconOf(one.finding.severity))
                                                : QVariant();
    case Qt::TextAlignmentRole:
        return index.column() == LineColumn ? QVariant(Qt::AlignRight | Qt::AlignVCenter)
                                            : QVariant();
    default:
        return {};
    }
}

QVariant FindingsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    const std::array names{tr("Severity"), tr("State"), tr("File"),
                           tr("Line"),     tr("Kind"),  tr("Finding")};
    return names.at(static_cast<size_t>(section));
}
