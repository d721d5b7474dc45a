#include "dialogs/ReopenDialog.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTextDocument>
#include <QTreeWidget>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

ReopenDialog::ReopenDialog(const QList<CatalogueEntry> &released, QWidget *parent)
    : QDialog(parent)
    , m_sets(new QTreeWidget(this))
{
    setObjectName(u"ReopenDialog"_s);
    setWindowTitle(tr("Reopen a released set"));
    layOut();
    fill(released);
}

void ReopenDialog::layOut()
{
    auto *layout = new QVBoxLayout(this);
    auto *label = new QLabel(tr("Released &sets, with the date of their release:"), this);
    label->setBuddy(m_sets);
    layout->addWidget(label);

    m_sets->setObjectName(u"lstReleased"_s);
    m_sets->setHeaderLabels({tr("Name"), tr("Released")});
    m_sets->setRootIsDecorated(false);
    m_sets->setUniformRowHeights(true);
    m_sets->header()->setStretchLastSection(false);
    m_sets->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    m_sets->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    layout->addWidget(m_sets);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    m_ok = buttons->button(QDialogButtonBox::Ok);
    m_ok->setEnabled(false);
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &ReopenDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &ReopenDialog::reject);
    connect(m_sets, &QTreeWidget::itemSelectionChanged, this,
            [this] { m_ok->setEnabled(!m_sets->selectedItems().isEmpty()); });
    connect(m_sets, &QTreeWidget::itemDoubleClicked, this, &ReopenDialog::accept);
    resize(fontMetrics().averageCharWidth() * 60, fontMetrics().height() * 20);
}

void ReopenDialog::fill(const QList<CatalogueEntry> &released)
{
    for (const CatalogueEntry &set : released) {
        auto *item = new QTreeWidgetItem(m_sets, {set.name, set.addDate});
        item->setToolTip(0, Qt::convertFromPlainText(set.name));
    }
}

QString ReopenDialog::chosen() const
{
    const QList<QTreeWidgetItem *> selected = m_sets->selectedItems();
    return selected.isEmpty() ? QString() : selected.first()->text(0);
}
