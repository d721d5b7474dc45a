#include "controls/quicknav/NodeNameDialog.h"

#include "controls/parts/CheckedField.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

NodeNameDialog *NodeNameDialog::forNew(QuickNavEditing &editing, const QuickNavRef &parent,
                                       QWidget *window)
{
    const QString word = QuickNavTree::word(parent.level + 1);
    return new NodeNameDialog(
        tr("New %1").arg(word), {},
        [&editing, parent](const QString &name) { return editing.newNameProblem(parent, name); },
        [&editing, parent](const QString &name) { editing.add(parent, name); }, window);
}

NodeNameDialog *NodeNameDialog::forOld(QuickNavEditing &editing, const QuickNavRef &node,
                                       QWidget *window)
{
    const QuickNavNode *old = QuickNavTree::find(editing.contents().nav(), node);
    return new NodeNameDialog(
        tr("Rename %1").arg(QuickNavTree::word(node.level)), old != nullptr ? old->name : QString(),
        [&editing, node](const QString &name) { return editing.nameProblem(node, name); },
        [&editing, node](const QString &name) { editing.rename(node, name); }, window);
}

NodeNameDialog::NodeNameDialog(const QString &title, const QString &name, const Rule &problem,
                               Use use, QWidget *window)
    : QDialog(window)
    , m_field(new CheckedField(u"txtNodeName"_s, tr("Name"), problem, {}, this))
    , cmdName(nullptr)
{
    setObjectName(u"NodeNameDialog"_s);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(title);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    cmdName = buttons->addButton(QDialogButtonBox::Ok);
    cmdName->setObjectName(u"cmdName"_s);
    auto *form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    form->addRow(tr("&Name:"), m_field);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(buttons);
    setMinimumWidth(fontMetrics().averageCharWidth() * 60);

    const auto enable = [this] { cmdName->setEnabled(m_field->problem().isEmpty()); };
    m_field->setText(name);
    enable();
    connect(m_field, &CheckedField::edited, this, enable);
    connect(buttons, &QDialogButtonBox::rejected, this, &NodeNameDialog::reject);
    connect(buttons, &QDialogButtonBox::accepted, this, [this, use = std::move(use)] {
        const QString text = m_field->text();
        accept();
        use(text);
    });
}
