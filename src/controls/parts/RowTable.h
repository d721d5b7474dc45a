#pragma once

#include "controls/parts/RowModel.h"

#include <QTreeView>

#include <functional>

class QLabel;
class QSortFilterProxyModel;

/// Rows in a view: sorted by clicking a title (the third click is as given again), filtered by a
/// text, copied with Ctrl+C, with a text in their place when there are none. Long texts are cut in
/// their middle.
class RowTable final : public QTreeView
{
    Q_OBJECT

public:
    explicit RowTable(const QList<TableColumn> &columns, QWidget *parent = nullptr);

    void setRows(QList<TableRow> rows); ///< the current row stays where it was
    void setFilter(const QString &text);
    [[nodiscard]] RowModel &rowModel() { return *m_model; }
    /// Places of the selected rows in what `setRows` got, as they are shown from top to bottom; of
    /// the current one, -1 when there is none.
    [[nodiscard]] QList<int> selectedRows() const;
    [[nodiscard]] int currentRow() const;
    void selectRows(const QList<int> &rows);
    /// Stands where the rows would be while there are none.
    void setPlaceholder(const QString &text);
    /// One more line in the context menu; `run` is called when there is a current row.
    void addCommand(const QString &text, const QKeySequence &keys,
                    const std::function<void()> &run);

Q_SIGNALS:
    void rowActivated(int row); ///< double click or Enter

private:
    void setUpLooks(const QList<TableColumn> &columns);
    void showPlaceholder();
    void copyRows() const;

    RowModel *m_model;
    QSortFilterProxyModel *m_sorted;
    QLabel *m_placeholder;
};
