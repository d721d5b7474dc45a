#include "indexmanager/RowTable.h"

#include "controls/parts/ListCommands.h"
#include "controls/parts/PlainLabel.h"
#include "controls/parts/PlainTip.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLocale>
#include <QSortFilterProxyModel>
#include <QVBoxLayout>

#include <algorithm>

RowModel::RowModel(QStringList headers, QObject *parent)
    : QAbstractTableModel(parent)
    , m_headers(std::move(headers))
{
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
    return parent.isValid() ? 0 : static_cast<int>(m_headers.size());
}

QVariant RowModel::data(const QModelIndex &index, int role) const
{
    const TableRow &row = m_rows.at(index.row());
    const QString text = row.texts.value(index.column());
    const bool isFirst = index.column() == 0;
    switch (role) {
    case Qt::DisplayRole:
        return text;
    case Qt::DecorationRole:
        return isFirst && row.mark != LinkMark::None ? QVariant(linkMarkIcon(row.mark))
                                                     : QVariant();
    case Qt::CheckStateRole:
        return isFirst && m_hasTicks ? QVariant(row.isTicked ? Qt::Checked : Qt::Unchecked)
                                     : QVariant();
    case Qt::ToolTipRole:
        return plainTip(isFirst && !row.tip.isEmpty() ? row.tip : text);
    case Qt::UserRole: {
        bool isNumber = false;
        const int number = QLocale().toInt(text, &isNumber);
        return isNumber ? QVariant(number) : QVariant(text);
    }
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
               ? QVariant(m_headers.at(section))
               : QVariant();
}

RowTable::RowTable(QStringList headers, const QList<int> &letters, QWidget *parent)
    : QTreeView(parent)
    , m_model(new RowModel(std::move(headers), this))
    , m_sorted(new QSortFilterProxyModel(this))
    , m_placeholder(plainLabel({}, viewport()))
{
    m_placeholder->setAlignment(Qt::AlignCenter);
    (new QVBoxLayout(viewport()))->addWidget(m_placeholder);
    m_sorted->setSourceModel(m_model);
    m_sorted->setSortRole(Qt::UserRole);
    m_sorted->setSortCaseSensitivity(Qt::CaseInsensitive);
    setModel(m_sorted);
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setAlternatingRowColors(true);
    setTextElideMode(Qt::ElideMiddle);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setSortingEnabled(true);
    setTabKeyNavigation(false);
    header()->setSortIndicatorClearable(true);
    sortByColumn(-1, Qt::AscendingOrder);
    for (int column = 0; column < letters.size(); ++column)
        header()->resizeSection(column, letters[column] * fontMetrics().averageCharWidth());
    connect(this, &QTreeView::activated, this,
            [this](const QModelIndex &) { Q_EMIT rowActivated(currentRow()); });
    setContextMenuPolicy(Qt::ActionsContextMenu);
    addListAction(this, tr("&Copy"), {}, QKeySequence::Copy, [this] { copyRows(); });
}

void RowTable::setRows(QList<TableRow> rows)
{
    m_model->setRows(std::move(rows));
    if (m_sorted->rowCount() > 0)
        setCurrentIndex(m_sorted->index(0, 0));
    showPlaceholder();
}

QList<int> RowTable::selectedRows() const
{
    QModelIndexList selected = selectionModel()->selectedRows();
    std::sort(selected.begin(), selected.end());
    QList<int> rows;
    for (const QModelIndex &index : selected)
        rows.append(m_sorted->mapToSource(index).row());
    return rows;
}

int RowTable::currentRow() const
{
    return currentIndex().isValid() ? m_sorted->mapToSource(currentIndex()).row() : -1;
}

void RowTable::selectRows(const QList<int> &rows)
{
    QItemSelection selection;
    for (const int row : rows) {
        const QModelIndex index = m_sorted->mapFromSource(m_model->index(row, 0));
        selection.select(index, index);
    }
    selectionModel()->select(selection,
                             QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

void RowTable::setPlaceholder(const QString &text)
{
    m_placeholder->setText(text);
    setAccessibleDescription(text);
    showPlaceholder();
}

void RowTable::showPlaceholder()
{
    m_placeholder->setVisible(m_sorted->rowCount() == 0);
}

void RowTable::copyRows() const
{
    QStringList lines;
    for (const int row : selectedRows())
        lines.append(m_model->rows().at(row).texts.join(u'\t'));
    QGuiApplication::clipboard()->setText(lines.join(u'\n'));
}
