#pragma once

#include "resources/LinkMarks.h"

#include <QAbstractTableModel>

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
    static constexpr int sortRole = Qt::UserRole; ///< numbers as such, else the text

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
