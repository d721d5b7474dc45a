#include "dialogs/RankGrid.h"

#include <QEvent>
#include <QHeaderView>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QStyledItemDelegate>

namespace {

/// Fixed cells: the colours of a button, and not greyed out although nothing can be done there.
class FixedColumn final : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        option->state |= QStyle::State_Enabled;
        option->palette.setCurrentColorGroup(QPalette::Active);
        option->backgroundBrush = option->palette.button();
        option->palette.setBrush(QPalette::Text, option->palette.buttonText());
    }
};

} // namespace

RankGrid::RankGrid(QWidget *parent)
    : QTableView(parent)
{
    setItemDelegateForColumn(0, new FixedColumn(this));
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    const int height = QLineEdit(this).sizeHint().height() + 2;
    verticalHeader()->setDefaultSectionSize(height);

    QHeaderView *const header = horizontalHeader();
    header->setStretchLastSection(true);
    header->setHighlightSections(false);
    header->setSectionsClickable(false);
    header->setMinimumSectionSize(60);
    header->setFixedHeight(height + 4);
    header->viewport()->installEventFilter(this);
    connect(header, &QHeaderView::sectionResized, this, [this](int section, int, int width) {
        if (section == 0 && !m_sharing)
            m_share = double(width) / viewport()->width();
        arrange();
    });
    connect(horizontalScrollBar(), &QScrollBar::valueChanged, this, &RankGrid::arrange);
}

void RankGrid::setModel(QAbstractItemModel *model)
{
    QTableView::setModel(model);
    shareWidth();
}

void RankGrid::coverHeader(QWidget *first, QWidget *second)
{
    m_boxes = {first, second};
    QPalette onHeader;
    onHeader.setColor(QPalette::Base, Qt::transparent);
    for (QWidget *const box : m_boxes) {
        box->setPalette(onHeader);
        box->setParent(horizontalHeader()->viewport());
        box->setAttribute(Qt::WA_TransparentForMouseEvents); // columns are dragged below it
        box->show();
    }
    arrange();
}

void RankGrid::resizeEvent(QResizeEvent *event)
{
    QTableView::resizeEvent(event);
    shareWidth();
    arrange();
}

bool RankGrid::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize && watched == horizontalHeader()->viewport())
        arrange();
    return QTableView::eventFilter(watched, event);
}

void RankGrid::shareWidth()
{
    const QScopedValueRollback sharing(m_sharing, true);
    horizontalHeader()->resizeSection(0, qRound(m_share * viewport()->width()));
}

void RankGrid::arrange()
{
    const QHeaderView &header = *horizontalHeader();
    for (int column = 0; column < header.count(); ++column) {
        if (QWidget *const box = m_boxes.at(static_cast<std::size_t>(column)))
            box->setGeometry(header.sectionViewportPosition(column), 0, header.sectionSize(column),
                             header.height());
    }
    Q_EMIT arranged();
}
