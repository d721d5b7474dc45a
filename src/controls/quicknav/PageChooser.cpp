#include "controls/quicknav/PageChooser.h"

#include "resources/Icons.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
constexpr int placeRole = Qt::UserRole;
}

PageChooser::PageChooser(const QString &title, const QList<ListedPage> &pages, Choose choose,
                         QWidget *parent)
    : QDialog(parent)
    , m_pages(pages)
    , m_shown(new QSortFilterProxyModel(this))
    , txtFilter(new QLineEdit(this))
    , tvwPages(new QTreeView(this))
{
    setObjectName(u"PageChooser"_s);
    setWindowTitle(title);
    fill();
    layOut(choose);
    const auto enable = [this] {
        cmdChoose->setEnabled(tvwPages->selectionModel()->hasSelection());
    };
    connect(tvwPages->selectionModel(), &QItemSelectionModel::selectionChanged, this, enable);
    connect(tvwPages, &QTreeView::doubleClicked, this, &PageChooser::accept);
    connect(txtFilter, &QLineEdit::textChanged, this, [this](const QString &text) {
        m_shown->setFilterFixedString(text.trimmed());
        tvwPages->setCurrentIndex(m_shown->index(0, 0));
    });
    tvwPages->setCurrentIndex(m_shown->index(0, 0));
    enable();
}

void PageChooser::fill()
{
    auto *model = new QStandardItemModel(0, 3, this);
    model->setHorizontalHeaderLabels({tr("Page"), tr("Book"), tr("File")});
    const QIcon picture = icon("page"_L1);
    for (qsizetype i = 0; i < m_pages.size(); ++i) {
        const ListedPage &page = m_pages.at(i);
        auto *title = new QStandardItem(picture, page.title);
        title->setData(i, placeRole);
        const QList row{title, new QStandardItem(page.book.name), new QStandardItem(page.path)};
        for (QStandardItem *item : row)
            item->setToolTip(item->text());
        model->appendRow(row);
    }
    m_shown->setSourceModel(model);
    m_shown->setFilterKeyColumn(-1);
    m_shown->setFilterCaseSensitivity(Qt::CaseInsensitive);
}

void PageChooser::layOut(Choose choose)
{
    txtFilter->setObjectName(u"txtPageFilter"_s);
    txtFilter->setPlaceholderText(tr("Filter"));
    txtFilter->setAccessibleName(tr("Filter of the pages"));
    txtFilter->setClearButtonEnabled(true);
    txtFilter->installEventFilter(this);
    tvwPages->setObjectName(u"tvwChoosePages"_s);
    tvwPages->setAccessibleName(tr("Pages of all books"));
    tvwPages->setModel(m_shown);
    tvwPages->setRootIsDecorated(false);
    tvwPages->setUniformRowHeights(true);
    tvwPages->setTextElideMode(Qt::ElideMiddle);
    tvwPages->setEditTriggers(QAbstractItemView::NoEditTriggers);
    tvwPages->setSelectionMode(choose == Choose::One ? QAbstractItemView::SingleSelection
                                                     : QAbstractItemView::ExtendedSelection);
    tvwPages->header()->setSectionResizeMode(QHeaderView::Stretch);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    cmdChoose = buttons->addButton(choose == Choose::One ? tr("Choose &page") : tr("&Add links"),
                                   QDialogButtonBox::AcceptRole);
    cmdChoose->setObjectName(u"cmdChoosePage"_s);
    cmdChoose->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &PageChooser::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &PageChooser::reject);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(txtFilter);
    layout->addWidget(tvwPages, 1);
    layout->addWidget(buttons);
    resize(fontMetrics().averageCharWidth() * 90, fontMetrics().height() * 28);
}

QList<ListedPage> PageChooser::chosen() const
{
    QList<qsizetype> rows;
    for (const QModelIndex &row : tvwPages->selectionModel()->selectedRows())
        rows.append(row.data(placeRole).toLongLong());
    std::sort(rows.begin(), rows.end());
    QList<ListedPage> pages;
    for (const qsizetype row : std::as_const(rows))
        pages.append(m_pages.at(row));
    return pages;
}

// The arrows go through the list while the filter is typed.
bool PageChooser::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == txtFilter && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Down || key == Qt::Key_Up)
            tvwPages->setFocus();
    }
    return QDialog::eventFilter(watched, event);
}
