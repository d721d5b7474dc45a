#include "controls/globals/ReplaceCategoryDialog.h"

#include "controls/parts/PlainLabel.h"
#include "controls/parts/Tables.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>

using namespace Qt::StringLiterals;

ReplaceCategoryDialog::ReplaceCategoryDialog(const Task &task, Run run, QWidget *parent)
    : QDialog(parent)
    , m_run(std::move(run))
    , cboInto(new QComboBox(this))
    , m_mayTakeAway(task.mayTakeAway)
{
    setWindowTitle(task.title);
    setObjectName(u"ReplaceCategoryDialog"_s);
    cboInto->setObjectName(u"cboInto"_s);
    cboInto->setAccessibleName(tr("What its books get instead"));
    // Long names leave room for the caption.
    cboInto->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    cboInto->setMinimumContentsLength(20);
    if (m_mayTakeAway)
        cboInto->addItem(tr("(nothing: take it away from them)"));
    cboInto->addItems(task.categories);

    auto *books = new QListWidget(this);
    books->setObjectName(u"lstCategoryBooks"_s);
    books->setAccessibleName(tr("Books with this category"));
    books->addItems(task.books);

    auto *buttons = new QDialogButtonBox(this);
    QPushButton *ok = buttons->addButton(task.button, QDialogButtonBox::AcceptRole);
    ok->setObjectName(u"cmdReplaceOk"_s);
    ok->setEnabled(cboInto->count() > 0);
    buttons->addButton(QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &ReplaceCategoryDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &ReplaceCategoryDialog::reject);

    auto *form = new QFormLayout;
    form->addRow(tr("Its books &get:"), cboInto);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(plainLabel(task.question, this));
    layout->addWidget(books);
    layout->addLayout(form);
    layout->addWidget(buttons);
    setMinimumWidth(fontMetrics().averageCharWidth() * 60);
    setTabOrder(books, cboInto);
    setTabOrder(cboInto, ok);
    cboInto->setFocus();
}

void ReplaceCategoryDialog::accept()
{
    const bool takesAway = m_mayTakeAway && cboInto->currentIndex() == 0;
    if (m_run(takesAway ? QString() : cboInto->currentText()))
        QDialog::accept();
}
