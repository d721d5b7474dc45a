#pragma once

#include <QTableWidget>

/// A table of plain texts to read: sorted by a click on the head, copied by rows (Ctrl+C).
class ListTable final : public QTableWidget
{
    Q_OBJECT

public:
    explicit ListTable(const QStringList &headings, QWidget *parent = nullptr);

    /// Puts the rows in as they come; once.
    void fill(const QList<QStringList> &rows);
    /// Shows numbers at the right, in the system's form, and sorts them as numbers. Before `fill`.
    void setNumbersFrom(int column) { m_firstNumber = column; }

    [[nodiscard]] bool hasSelectedRows() const;
    /// The selected rows, or all of them when none is selected, in the order shown: lines with
    /// cells parted by tabs, so that a spreadsheet takes them.
    [[nodiscard]] QString copied() const;
    /// How large it is with all in sight.
    [[nodiscard]] QSize fullSize() const;

private:
    void keyPressEvent(QKeyEvent *event) override;
    void fitColumns();
    [[nodiscard]] QTableWidgetItem *cell(const QString &text, int column) const;
    [[nodiscard]] QString line(int row) const;

    int m_firstNumber;
};
