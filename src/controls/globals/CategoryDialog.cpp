#include "controls/globals/CategoryDialog.h"

#include "controls/globals/CategoryRules.h"
#include "controls/parts/CheckedField.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>

using namespace Qt::StringLiterals;

CategoryDialog::CategoryDialog(Task task, Run run, QWidget *parent)
    : QDialog(parent)
    , m_task(std::move(task))
    , m_run(std::move(run))
    , txtName(new CheckedField(
          u"txtCategoryName"_s, tr("Name of the category"),
          [this](const QString &name) { return CategoryRules::problemOf(name, m_task.others); }, {},
          this))
    , txtDescription(new QLineEdit(this))
    , cmdOk(new QPushButton(m_task.button, this))
{
    setWindowTitle(m_task.title);
    setObjectName(u"CategoryDialog"_s);
    layOut();
    connect(txtName, &CheckedField::edited, this, &CategoryDialog::judge);
    txtName->setText(m_task.name);
    txtDescription->setText(m_task.description);
    judge();
}

void CategoryDialog::layOut()
{
    txtDescription->setObjectName(u"txtCategoryDescription"_s);
    txtDescription->setAccessibleName(tr("Description of the category"));
    auto *form = new QFormLayout;
    form->addRow(tr("&Name:"), txtName);
    if (m_task.hasDescription)
        form->addRow(tr("&Description:"), txtDescription);
    else
        txtDescription->hide();

    auto *buttons = new QDialogButtonBox(this);
    buttons->addButton(cmdOk, QDialogButtonBox::AcceptRole);
    buttons->addButton(QDialogButtonBox::Cancel);
    cmdOk->setObjectName(u"cmdCategoryOk"_s);
    cmdOk->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &CategoryDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &CategoryDialog::reject);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(buttons);
    setMinimumWidth(fontMetrics().averageCharWidth() * 60);
    txtName->setFocus();
}

void CategoryDialog::judge()
{
    cmdOk->setEnabled(txtName->problem().isEmpty());
    cmdOk->setToolTip(txtName->problem());
}

void CategoryDialog::accept()
{
    if (txtName->problem().isEmpty() && m_run(txtName->text(), txtDescription->text().trimmed()))
        QDialog::accept();
}
