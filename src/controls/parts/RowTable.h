#pragma once

#include "resources/LinkMarks.h"

#include <QAbstractTableModel>
#include <QTreeView>

#include <functional>

class QLabel;
class QSortFilterProxyModel;

/// One row of a list.
struct TableRow
{
    QStringList texts;
    LinkMark mark = LinkMark::None; ///< stands in the column of the state, with the tool tip
    QString tip = {};               ///< "": the text itself
    bool isTicked = false;
};

struct TableColumn
{
    QString title;
    int letters = 0; ///< width; the last column takes what is left
    enum Kind { Text, Number, State } kind = Text;
};

/// Rows as a table, in the order given; with ticks in the first column, where there are some.
class RowModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    explicit RowModel(QList<TableColumn> columns, QObject *parent = nullptr);
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
    QList<TableColumn> m_columns;
    QHash<LinkMark, QIcon> m_marks;
    QList<TableRow> m_rows;
    bool m_hasTicks = false;
};

/// Shows them: sorted by clicking a title (the third click is as given again), filtered by a text,
/// copied with Ctrl+C, with a text in their place when there are none. Long texts are cut in their
/// middle.
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
