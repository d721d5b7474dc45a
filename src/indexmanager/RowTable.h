#pragma once

#include "controls/links/LinkTable.h"

#include <QAbstractTableModel>
#include <QTreeView>

class QLabel;
class QSortFilterProxyModel;

/// One row of a list. The mark stands at the first text.
struct TableRow
{
    QStringList texts;
    LinkMark mark = LinkMark::None;
    QString tip = {}; ///< of the first text; "": the text itself
    bool isTicked = false;
};

/// Rows as a table; with ticks, where there are some.
class RowModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    explicit RowModel(QStringList headers, QObject *parent = nullptr);
    void setRows(QList<TableRow> rows);
    void setHasTicks() { m_hasTicks = true; }
    void tickAll(bool ticked);
    [[nodiscard]] const QList<TableRow> &rows() const { return m_rows; }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    QStringList m_headers;
    QList<TableRow> m_rows;
    bool m_hasTicks = false;
};

/// Shows them: sorted by clicking a title (numbers by their value), copied with Ctrl+C, with a text
/// in their place when there are none. Long texts are cut in their middle.
class RowTable final : public QTreeView
{
    Q_OBJECT

public:
    /// `letters` are the widths of the columns but the last.
    RowTable(QStringList headers, const QList<int> &letters, QWidget *parent = nullptr);

    void setRows(QList<TableRow> rows);
    [[nodiscard]] RowModel &rowModel() { return *m_model; }
    /// Places of the selected rows in what `setRows` got, from top to bottom; of the current one,
    /// -1 when there is none.
    [[nodiscard]] QList<int> selectedRows() const;
    [[nodiscard]] int currentRow() const;
    void selectRows(const QList<int> &rows);
    /// Stands where the rows would be while there are none.
    void setPlaceholder(const QString &text);

Q_SIGNALS:
    void rowActivated(int row); ///< double click or Enter

private:
    void showPlaceholder();
    void copyRows() const;

    RowModel *m_model;
    QSortFilterProxyModel *m_sorted;
    QLabel *m_placeholder;
};
