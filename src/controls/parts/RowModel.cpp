#include "controls/parts/RowModel.h"

#include "resources/PlainTip.h"

#include <QLocale>

RowModel::RowModel(QList<TableColumn> columns, QObject *parent)
    : QAbstractTableModel(parent)
    , m_columns(std::move(columns))
{
    for (const LinkMark mark :
         {LinkMark::Good, LinkMark::Warning, LinkMark::Bad, LinkMark::Unchecked})
        m_marks.insert(mark, linkMarkIcon(mark));
}

void RowModel::setRows(QList<TableRow> rows)
{
    beginResetModel();
    m_rows = std::move(rows);
    endResetModel();
}

void RowModel::tickAll(bool ticked)
{
    for (TableRow &row : m_rows)
        row.isTicked = ticked;
    if (!m_rows.isEmpty())
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, 0), {Qt::CheckStateRole});
}

int RowModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int RowModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_columns.size());
}

QVariant RowModel::data(const QModelIndex &index, int role) const
{
    const TableRow &row = m_rows.at(index.row());
    const QString text = row.texts.value(index.column());
    const auto kind = m_columns.at(index.column()).kind;
    switch (role) {
    case Qt::DisplayRole:
        return text;
    case Qt::DecorationRole:
        return kind == TableColumn::State && m_marks.contains(row.mark)
                   ? QVariant(m_marks.value(row.mark))
                   : QVariant();
    case Qt::CheckStateRole:
        return m_hasTicks && index.column() == 0
                   ? QVariant(row.isTicked ? Qt::Checked : Qt::Unchecked)
                   : QVariant();
    case Qt::ToolTipRole:
        return plainTip(kind == TableColumn::State && !row.tip.isEmpty() ? row.tip : text);
    case Qt::TextAlignmentRole:
        return kind == TableColumn::Number ? QVariant(Qt::AlignRight | Qt::AlignVCenter)
                                           : QVariant();
    case sortRole:
        return kind == TableColumn::Number ? QVariant(QLocale().toInt(text)) : QVariant(text);
    default:
        return {};
    }
}

bool RowModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::CheckStateRole)
        return false;
    m_rows[index.row()].isTicked = value.toInt() == Qt::Checked;
    Q_EMIT dataChanged(index, index, {role});
    return true;
}

Qt::ItemFlags RowModel::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags usual = QAbstractTableModel::flags(index);
    return m_hasTicks && index.column() == 0 ? usual | Qt::ItemIsUserCheckable : usual;
}

QVariant RowModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    return orientation == Qt::Horizontal && role == Qt::DisplayRole
               ? QVariant(m_columns.at(section).title)
               : QVariant();
}
