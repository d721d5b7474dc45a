#include "controls/globals/RenameFileDialog.h"

#include "controls/parts/CheckedField.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QPushButton>

using namespace Qt::StringLiterals;

RenameFileDialog::RenameFileDialog(const QString &name, Rule problem, Run run, QWidget *parent)
    : QDialog(parent)
    , m_run(std::move(run))
    , txtName(new CheckedField(u"txtNewFile"_s, tr("New name of the file"), std::move(problem), {},
                               this))
    , cmdOk(new QPushButton(tr("&Rename"), this))
{
    setWindowTitle(tr("Rename file"));
    setObjectName(u"RenameFileDialog"_s);
    auto *form = new QFormLayout;
    form->addRow(tr("New &name:"), txtName);
    auto *buttons = new QDialogButtonBox(this);
    buttons->addButton(cmdOk, QDialogButtonBox::AcceptRole);
    buttons->addButton(QDialogButtonBox::Cancel);
    cmdOk->setObjectName(u"cmdRenameFile"_s);
    cmdOk->setDefault(true);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(buttons);
    setMinimumWidth(fontMetrics().averageCharWidth() * 60);

    const auto judge = [this] {
        cmdOk->setEnabled(txtName->problem().isEmpty());
        cmdOk->setToolTip(txtName->problem());
    };
    connect(buttons, &QDialogButtonBox::accepted, this, &RenameFileDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &RenameFileDialog::reject);
    connect(txtName, &CheckedField::edited, this, judge);
    txtName->setText(name);
    judge();
    txtName->setFocus();
}

void RenameFileDialog::accept()
{
    if (txtName->problem().isEmpty() && m_run(txtName->text()))
        QDialog::accept();
}
