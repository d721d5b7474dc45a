#include "controls/parts/RowTable.h"

#include "controls/parts/ListCommands.h"
#include "controls/parts/PlainLabel.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QSortFilterProxyModel>
#include <QVBoxLayout>

#include <algorithm>

RowTable::RowTable(const QList<TableColumn> &columns, QWidget *parent)
    : QTreeView(parent)
    , m_model(new RowModel(columns, this))
    , m_sorted(new QSortFilterProxyModel(this))
    , m_placeholder(plainLabel({}, viewport()))
{
    m_placeholder->setAlignment(Qt::AlignCenter);
    (new QVBoxLayout(viewport()))->addWidget(m_placeholder);
    m_sorted->setSourceModel(m_model);
    m_sorted->setSortRole(RowModel::sortRole);
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
