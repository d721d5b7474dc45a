#include "controls/parts/RowTable.h"

#include "controls/parts/ListCommands.h"
#include "controls/parts/PlainLabel.h"
#include "resources/PlainTip.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLocale>
#include <QSortFilterProxyModel>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int sortRole = Qt::UserRole;

} // namespace

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

RowTable::RowTable(const QList<TableColumn> &columns, QWidget *parent)
    : QTreeView(parent)
    , m_model(new RowModel(columns, this))
    , m_sorted(new QSortFilterProxyModel(this))
    , m_placeholder(plainLabel({}, viewport()))
{
    m_placeholder->setAlignment(Qt::AlignCenter);
    (new QVBoxLayout(viewport()))->addWidget(m_placeholder);
    m_sorted->setSourceModel(m_model);
    m_sorted->setSortRole(sortRole);
    m_sorted->setSortCaseSensitivity(Qt::CaseInsensitive);
    m_sorted->setFilterCaseSensitivity(Qt::CaseInsensitive);
    m_sorted->setFilterKeyColumn(-1);
    setModel(m_sorted);
    setUpLooks(columns);
    connect(this, &QTreeView::activated, this,
            [this](const QModelIndex &) { Q_EMIT rowActivated(currentRow()); });
    setContextMenuPolicy(Qt::ActionsContextMenu);
    addCommand(tr("&Copy"), QKeySequence::Copy, [this] { copyRows(); });
}

void RowTable::setUpLooks(const QList<TableColumn> &columns)
{
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
    const int letter = fontMetrics().averageCharWidth();
    for (int column = 0; column < columns.size() - 1; ++column)
        header()->resizeSection(column, columns.at(column).letters * letter);
}

void RowTable::setRows(QList<TableRow> rows)
{
    const int row = currentIndex().row();
    m_model->setRows(std::move(rows));
    if (const int shown = m_sorted->rowCount(); shown > 0)
        setCurrentIndex(m_sorted->index(qBound(0, row, shown - 1), 0));
    showPlaceholder();
}

void RowTable::setFilter(const QString &text)
{
    m_sorted->setFilterFixedString(text);
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
    m_placeholder->setVisible(m_model->rowCount() == 0);
}

void RowTable::copyRows() const
{
    QStringList lines;
    for (const int row : selectedRows())
        lines.append(m_model->rows().at(row).texts.join(u'\t'));
    QGuiApplication::clipboard()->setText(lines.join(u'\n'));
}

void RowTable::addCommand(const QString &text, const QKeySequence &keys,
                          const std::function<void()> &run)
{
    addListAction(this, text, {}, keys, [this, run] {
        if (currentRow() >= 0)
            run();
    });
}
