#include "reports/LinkReportView.h"

#include "reports/LinkOrder.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int markSize = 16; ///< of the status

bool isCharacter(const QKeyEvent &key)
{
    const QString text = key.text();
    return !text.isEmpty() && text.at(0).isPrint() && !text.at(0).isSpace();
}

} // namespace

LinkReportView::LinkReportView(QWidget *parent)
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

void LinkReportView::setModel(QAbstractItemModel *model)
{
    QTableView::setModel(model);
    const int letter = fontMetrics().averageCharWidth();
    setColumnWidth(static_cast<int>(LinkColumn::Status), 14 * letter);
    setColumnWidth(static_cast<int>(LinkColumn::LinkID), 34 * letter);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(qMax(fontMetrics().height(), markSize) + 6);
}

void LinkReportView::setPlaceholder(const QString &text)
{
    m_placeholder->setText(text);
    m_placeholder->setVisible(!text.isEmpty());
    setAccessibleDescription(text);
}

QList<int> LinkReportView::selectedRows() const
{
    QList<int> rows;
    for (const QItemSelectionRange &range : selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row)
            rows.append(row);
    }
    std::sort(rows.begin(), rows.end());
    return rows;
}

void LinkReportView::setSortedBy(int column, Qt::SortOrder order)
{
    const QSignalBlocker quiet(horizontalHeader());
    horizontalHeader()->setSortIndicator(column, order);
}

void LinkReportView::keyPressEvent(QKeyEvent *event)
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
