#include "controls/parts/NameDialog.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

NameDialog::NameDialog(const Texts &texts, const CheckedField::Rule &problem, Run run,
                       QWidget *parent, const CheckedField::Rule &advice)
    : QDialog(parent)
    , m_old(texts.name)
    , m_run(std::move(run))
    , m_name(new CheckedField(u"txtNewName"_s, QString(texts.label).remove(u'&').remove(u':'),
                              problem, advice, this))
{
    setObjectName(u"NameDialog"_s);
    setWindowTitle(texts.title);
    setAttribute(Qt::WA_DeleteOnClose);
    auto *form = new QFormLayout;
    form->addRow(texts.label, m_name);
    auto *buttons = new QDialogButtonBox(this);
    QPushButton *const ok = buttons->addButton(texts.accept, QDialogButtonBox::AcceptRole);
    ok->setObjectName(u"cmdAcceptName"_s);
    ok->setDefault(true);
    buttons->addButton(QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &NameDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &NameDialog::reject);
    const auto judge = [this, ok] {
        const QString says = m_name->problem();
        ok->setEnabled(says.isEmpty());
        ok->setToolTip(says);
    };
    connect(m_name, &CheckedField::edited, this, judge);
    m_name->setText(m_old);
    judge();

    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(buttons);
    setMinimumWidth(fontMetrics().averageCharWidth() * 64);
    m_name->setFocus();
}

void NameDialog::accept()
{
    const QString name = m_name->text();
    if (m_name->problem().isEmpty() && (name == m_old || m_run(name)))
        QDialog::accept();
}
