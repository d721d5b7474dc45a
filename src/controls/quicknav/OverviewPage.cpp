#include "controls/quicknav/OverviewPage.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QTableView>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

/// A header that shortens in their middle the names that have no room; the usual one cuts them off.
class ElidedHeader final : public QHeaderView
{
public:
    explicit ElidedHeader(Qt::Orientation orientation, QWidget *parent)
        : QHeaderView(orientation, parent)
    {
        setSectionsClickable(true);
        setHighlightSections(true);
    }

private:
    void initStyleOptionForIndex(QStyleOptionHeader *option, int section) const override
    {
        QHeaderView::initStyleOptionForIndex(option, section);
        QFont widest = font();
        widest.setBold(true); // as the sections of the chosen cell
        const int size =
            orientation() == Qt::Horizontal ? sectionSize(section) : viewport()->width();
        const int margin = style()->pixelMetric(QStyle::PM_HeaderMargin, option, this);
        option->text =
            QFontMetrics(widest).elidedText(option->text, Qt::ElideMiddle, size - 2 * margin);
    }
};

} // namespace

OverviewPage::OverviewPage(QuickNavEditing &editing, QWidget *parent)
    : QWidget(parent)
    , m_editing(editing)
    , m_model(new OverviewModel(editing.contents(), this))
    , txtFilter(new QLineEdit(this))
    , cboShow(new QComboBox(this))
    , tblOverview(new QTableView(this))
    , m_says(new QLabel(this))
{
    layOut();
    connect(txtFilter, &QLineEdit::textChanged, this, &OverviewPage::applyFilter);
    connect(cboShow, &QComboBox::currentIndexChanged, this, &OverviewPage::applyFilter);
    connect(tblOverview, &QTableView::activated, this, &OverviewPage::activate);
    connect(&m_editing.contents(), &QuickNavContents::changed, this, [this] {
        m_isOutdated = true;
        if (isVisible())
            followContents();
    });
}

void OverviewPage::layOut()
{
    txtFilter->setObjectName(u"txtOverviewFilter"_s);
    txtFilter->setPlaceholderText(tr("Filter (Ctrl+F)"));
    txtFilter->setAccessibleName(tr("Filter of the overview"));
    txtFilter->setToolTip(tr("Shows the rows, or else the columns, that have this text."));
    txtFilter->setClearButtonEnabled(true);
    cboShow->setObjectName(u"cboOverviewShow"_s);
    cboShow->setAccessibleName(tr("Rows to show"));
    cboShow->addItems({tr("All rows"), tr("Rows with gaps"), tr("Rows with dead links")});

    tblOverview->setObjectName(u"tblOverview"_s);
    tblOverview->setAccessibleName(tr("Overview of the quick navigation"));
    tblOverview->setModel(m_model);
    tblOverview->setEditTriggers(QAbstractItemView::NoEditTriggers);
    tblOverview->setSelectionMode(QAbstractItemView::SingleSelection);
    tblOverview->setCornerButtonEnabled(false);
    tblOverview->setTabKeyNavigation(false);
    const int character = fontMetrics().averageCharWidth();
    tblOverview->setHorizontalHeader(new ElidedHeader(Qt::Horizontal, tblOverview));
    tblOverview->setVerticalHeader(new ElidedHeader(Qt::Vertical, tblOverview));
    tblOverview->horizontalHeader()->setDefaultSectionSize(character * 16);
    tblOverview->horizontalHeader()->setMinimumSectionSize(character * 5);
    tblOverview->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    tblOverview->verticalHeader()->setDefaultSectionSize(fontMetrics().height() * 3 / 2);
    m_says->setObjectName(u"lblOverview"_s);
    m_says->setTextFormat(Qt::PlainText);
    m_says->setWordWrap(true);

    auto *bar = new QHBoxLayout;
    bar->addWidget(txtFilter, 1);
    bar->addWidget(cboShow);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(bar);
    layout->addWidget(tblOverview, 1);
    layout->addWidget(m_says);
    setFocusProxy(tblOverview);
}

void OverviewPage::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (m_isOutdated)
        followContents();
}

// The names of the rows stay on the screen, but leave most of it to the cells.
void OverviewPage::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    tblOverview->verticalHeader()->setMaximumWidth(width() * 2 / 5);
}

void OverviewPage::followContents()
{
    m_isOutdated = false;
    const QModelIndex was = tblOverview->currentIndex();
    const QuickNavRef node = was.isValid() ? m_model->node(was.row()) : QuickNavRef();
    const QString column = was.isValid() ? m_model->columnName(was.column()) : QString();
    m_model->rebuild();
    int row = 0;
    for (int i = 0; i < m_model->rowCount(); ++i) {
        if (m_model->node(i) == node)
            row = i;
    }
    int at = 0;
    for (int i = 0; i < m_model->columnCount(); ++i) {
        if (m_model->columnName(i) == column)
            at = i;
    }
    tblOverview->setCurrentIndex(m_model->index(row, at));
    applyFilter();
}

// A text that no row has is looked for in the names of the columns.
void OverviewPage::applyFilter()
{
    const QString text = txtFilter->text().trimmed();
    const auto has = [&](const QString &name) { return name.contains(text, Qt::CaseInsensitive); };
    const auto show = static_cast<Show>(cboShow->currentIndex());
    bool anyRow = false;
    for (int row = 0; row < m_model->rowCount() && !anyRow; ++row)
        anyRow = has(m_model->rowName(row));
    int shown = 0;
    for (int row = 0; row < m_model->rowCount(); ++row) {
        const bool fits = (!anyRow || has(m_model->rowName(row)))
                          && (show != Show::Gaps || m_model->hasGaps(row))
                          && (show != Show::Dead || m_model->hasDead(row));
        tblOverview->setRowHidden(row, !fits);
        shown += fits ? 1 : 0;
    }
    for (int column = 0; column < m_model->columnCount(); ++column)
        tblOverview->setColumnHidden(column, !anyRow && !has(m_model->columnName(column)));
    m_says->setText(
        tr("%1 of %2 rows. Hatched: no such category yet, Enter makes it. 0: no links yet. "
           "\u26A0: so many of the links are dead.")
            .arg(shown)
            .arg(m_model->rowCount()));
}

void OverviewPage::activate(const QModelIndex &at)
{
    if (!at.isValid())
        return;
    const OverviewModel::Cell cell = m_model->cell(at);
    const QuickNavRef node = m_model->node(at.row());
    if (!cell.category.isEmpty())
        Q_EMIT nodeWanted({QuickNavTree::categoryLevel, cell.category});
    else if (m_model->isTopic(at.row()))
        m_editing.add(node, m_model->columnName(at.column()));
    else
        Q_EMIT nodeWanted(node);
}

void OverviewPage::focusFilter()
{
    txtFilter->setFocus();
    txtFilter->selectAll();
}
