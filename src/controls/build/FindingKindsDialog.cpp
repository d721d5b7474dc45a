#include "controls/build/FindingKindsDialog.h"

#include "controls/parts/PlainLabel.h"
#include "controls/parts/Tables.h"
#include "tools/checks/FindingKinds.h"

#include <QDialogButtonBox>
#include <QTreeWidget>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

enum Column { CodeColumn, SeverityColumn, NameColumn };

QStringList unknownAmong(QStringList codes)
{
    codes.removeIf([](const QString &code) { return findingKind(code) != nullptr; });
    return codes;
}

} // namespace

FindingKindsDialog::FindingKindsDialog(const QStringList &switchedOff, Decide decide,
                                       QWidget *parent)
    : QDialog(parent)
    , m_decide(std::move(decide))
    , m_unknown(unknownAmong(switchedOff))
    , lstKinds(makeTable(u"lstKinds"_s, tr("Kinds of findings"),
                         {tr("Code"), tr("Severity"), tr("Kind")}, NameColumn, this))
{
    setObjectName(u"FindingKindsDialog"_s);
    setWindowTitle(tr("Kinds of findings"));
    for (const FindingKind &kind : findingKinds()) {
        QTreeWidgetItem *row =
            addRow(lstKinds, {kind.code, nameOf(kind.severity), kind.name()}, kind.name());
        row->setCheckState(CodeColumn,
                           switchedOff.contains(kind.code) ? Qt::Unchecked : Qt::Checked);
        row->setToolTip(NameColumn, kind.explanation());
    }
    QLabel *const explanation = plainLabel({}, this);
    explanation->setObjectName(u"lblKind"_s);
    explanation->setMinimumHeight(fontMetrics().lineSpacing() * 3);
    explanation->setAlignment(Qt::AlignTop);
    connect(lstKinds, &QTreeWidget::currentItemChanged, explanation,
            [explanation](const QTreeWidgetItem *row) {
                explanation->setText(row == nullptr ? QString() : row->toolTip(NameColumn));
            });
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &FindingKindsDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &FindingKindsDialog::reject);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(plainLabel(tr("The checks look for what is ticked, in this project."), this));
    layout->addWidget(lstKinds, 1);
    layout->addWidget(explanation);
    layout->addWidget(buttons);
    resize(fontMetrics().averageCharWidth() * 80, fontMetrics().lineSpacing() * 32);
    lstKinds->setCurrentItem(lstKinds->topLevelItem(0));
    lstKinds->setFocus();
}

void FindingKindsDialog::accept()
{
    QStringList switchedOff = m_unknown;
    for (int row = 0; row < lstKinds->topLevelItemCount(); ++row) {
        const QTreeWidgetItem *const kind = lstKinds->topLevelItem(row);
        if (kind->checkState(CodeColumn) == Qt::Unchecked)
            switchedOff.append(kind->text(CodeColumn));
    }
    if (m_decide(switchedOff))
        QDialog::accept();
}
