#include "reports/LongListView.h"

#include "resources/LinkMarks.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include <algorithm>

namespace {

bool isCharacter(const QKeyEvent &key)
{
    const QString text = key.text();
    return !text.isEmpty() && text.at(0).isPrint() && !text.at(0).isSpace();
}

} // namespace

LongListView::LongListView(QWidget *parent)
    : QTableView(parent)
    , m_placeholder(new QLabel(viewport()))
{
    m_placeholder->setTextFormat(Qt::PlainText);
    m_placeholder->setAlignment(Qt::AlignCenter);
    m_placeholder->setWordWrap(true);
    (new QVBoxLayout(viewport()))->addWidget(m_placeholder);
    setSortingEnabled(true);
    horizontalHeader()->setSortIndicatorClearable(true);
    setSortedBy(-1, Qt::AscendingOrder);
}

void LongListView::setModel(QAbstractItemModel *model)
{
    QTableView::setModel(model);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(qMax(fontMetrics().height(), linkMarkSize) + 6);
}

void LongListView::setPlaceholder(const QString &text)
{
    m_placeholder->setText(text);
    m_placeholder->setVisible(!text.isEmpty());
    setAccessibleDescription(text);
}

QList<int> LongListView::selectedRows() const
{
    QList<int> rows;
    for (const QItemSelectionRange &range : selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row)
            rows.append(row);
    }
    std::sort(rows.begin(), rows.end());
    return rows;
}

void LongListView::setSortedBy(int column, Qt::SortOrder order)
{
    const QSignalBlocker quiet(horizontalHeader());
    horizontalHeader()->setSortIndicator(column, order);
}

void LongListView::keyPressEvent(QKeyEvent *event)
{
    const auto modifiers = event->modifiers() & ~Qt::KeypadModifier;
    const bool plain = (modifiers & ~Qt::ShiftModifier) == 0;
    const bool atAnEnd = event->key() == Qt::Key_Home || event->key() == Qt::Key_End;
    if (plain && atAnEnd) {
        QKeyEvent wholeList(QEvent::KeyPress, event->key(), modifiers | Qt::ControlModifier);
        QTableView::keyPressEvent(&wholeList);
    } else if (plain && isCharacter(*event)) {
        Q_EMIT typed(event);
    } else {
        QTableView::keyPressEvent(event);
    }
}
