#include "dialogs/ListTable.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QTextDocument>

#include <algorithm>

using namespace Qt::StringLiterals;

ListTable::ListTable(const QStringList &headings, QWidget *parent)
    : QTableWidget(0, static_cast<int>(headings.size()), parent)
    , m_firstNumber(columnCount())
{
    setHorizontalHeaderLabels(headings);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setAlternatingRowColors(true);
    setTabKeyNavigation(false);
    setWordWrap(false);
    horizontalHeader()->setHighlightSections(false);
    verticalHeader()->hide();
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
}

void ListTable::fill(const QList<QStringList> &rows)
{
    setRowCount(static_cast<int>(rows.size()));
    int row = 0;
    for (const QStringList &cells : rows) {
        int column = 0;
        for (const QString &text : cells) {
            setItem(row, column, cell(text, column));
            ++column;
        }
        ++row;
    }
    fitColumns();
    horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder); // first as they came
    setSortingEnabled(true);
}

QTableWidgetItem *ListTable::cell(const QString &text, int column) const
{
    auto *const item = new QTableWidgetItem;
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    if (column < m_firstNumber) {
        item->setText(text);
        item->setToolTip(Qt::convertFromPlainText(text));
    } else {
        item->setData(Qt::DisplayRole, text.toInt());
        item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    }
    return item;
}

void ListTable::fitColumns()
{
    const int letter = fontMetrics().averageCharWidth();
    QHeaderView *const header = horizontalHeader();
    resizeColumnsToContents();
    for (int column = 0; column < header->count(); ++column)
        header->resizeSection(column, std::min(header->sectionSize(column) + letter, 30 * letter));
    header->setStretchLastSection(m_firstNumber == columnCount());
}

QSize ListTable::fullSize() const
{
    const int frame = 2 * frameWidth();
    return {horizontalHeader()->length() + frame,
            horizontalHeader()->sizeHint().height() + verticalHeader()->length() + frame};
}

bool ListTable::hasSelectedRows() const
{
    return selectionModel()->hasSelection();
}

QString ListTable::copied() const
{
    const bool all = !hasSelectedRows();
    QString text;
    for (int row = 0; row < rowCount(); ++row) {
        if (all || selectionModel()->isRowSelected(row))
            text += line(row) + u'\n';
    }
    return text;
}

QString ListTable::line(int row) const
{
    QStringList cells;
    for (int column = 0; column < columnCount(); ++column)
        cells.append(item(row, column)->text());
    return cells.join(u'\t');
}

// A table of its own accord copies one cell only.
void ListTable::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Copy))
        QGuiApplication::clipboard()->setText(copied());
    else
        QTableWidget::keyPressEvent(event);
}
