#pragma once

#include <QTableView>

class QKeyEvent;
class QLabel;

/// A long list as a table without cells: rows of one height, sorted by clicking a column's title
/// (the third click is as listed again), with a text over it when it is empty.
class LongListView final : public QTableView
{
    Q_OBJECT

public:
    explicit LongListView(QWidget *parent = nullptr);

    void setModel(QAbstractItemModel *model) override;
    /// Stands where the rows would be; "" while there are rows.
    void setPlaceholder(const QString &text);
    [[nodiscard]] QList<int> selectedRows() const; ///< from top to bottom
    /// The title that shows how the list is sorted, without asking for a new order; -1 is none.
    void setSortedBy(int column, Qt::SortOrder order);

Q_SIGNALS:
    /// A key that stands for a character, which means the filter.
    void typed(QKeyEvent *key);

protected:
    /// Home and End are the first and the last row.
    void keyPressEvent(QKeyEvent *event) override;

private:
    QLabel *m_placeholder;
};
