#pragma once

#include "tools/checks/QaReport.h"

#include <QAbstractTableModel>
#include <QSet>

#include <optional>
#include <vector>

/// What of a report an author wants to see.
struct FindingsFilter
{
    QString text; ///< in file, kind or finding, without regard to case
    Severity least = Severity::Note;
    std::optional<bool> known = {}; ///< only known ones, or only new ones
    friend bool operator==(const FindingsFilter &, const FindingsFilter &) = default;
};

/// The findings of a quality report as a table, filtered and sorted here: there may be a hundred
/// thousand.
class FindingsModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { SeverityColumn, StateColumn, FileColumn, LineColumn, KindColumn, TextColumn };
    static constexpr int columns = TextColumn + 1;

    using QAbstractTableModel::QAbstractTableModel;

    void setReport(QaReport report);
    void setFilter(const FindingsFilter &filter);
    /// Says anew which findings are known, and leaves out what is switched off.
    void judgeBy(const Baseline &baseline);
    [[nodiscard]] const QaReport &report() const { return m_report; }
    [[nodiscard]] const QaFinding &finding(int row) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    /// By a column; by none (-1) what is new first, and of that the worst, else in the order of the
    /// report.
    void sort(int column, Qt::SortOrder order) override;

private:
    [[nodiscard]] QString text(const QaFinding &one, int column) const;
    [[nodiscard]] bool isShown(const QaFinding &one) const;
    [[nodiscard]] bool comesBefore(const QaFinding &a, const QaFinding &b) const;
    void showRows(std::vector<int> candidates);
    [[nodiscard]] std::vector<int> allRows() const;

    QaReport m_report;
    std::vector<int> m_rows; ///< places in the report, in the order shown
    FindingsFilter m_filter;
    QSet<QString> m_codes; ///< of the kinds whose name holds the text of the filter
    static constexpr int NoColumn = -1;
    int m_sortColumn = NoColumn;
    Qt::SortOrder m_order = Qt::AscendingOrder;
};
