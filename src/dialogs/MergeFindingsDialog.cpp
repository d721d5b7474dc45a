#include "dialogs/MergeFindingsDialog.h"

#include "dialogs/ListTable.h"
#include "dialogs/ReportParts.h"
#include "resources/Texts.h"

#include <QClipboard>
#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

MergeFindingsDialog::MergeFindingsDialog(const MergeResult &result, const QString &nativeLogPath,
                                         QWidget *parent)
    : QDialog(parent)
    , m_table(
          new ListTable({tr("What"), tr("Project"), tr("Book"), tr("Acronym"), tr("Note")}, this))
{
    setObjectName(u"MergeFindingsDialog"_s);
    setWindowTitle(text(Text::WindowTitle));
    auto *const layout = new QVBoxLayout(this);
    layout->addWidget(reportLabel(tr("The projects are merged. What is listed here was changed on "
                                     "the way or left out:"),
                                  this));
    fill(result.findings);
    layout->addWidget(m_table, 1);
    layout->addWidget(
        logLabel(tr("The same list lies in %1").arg(result.logPath), nativeLogPath, this));
    layout->addWidget(buttons());
    resize(reportSize(*this));
    m_table->setFocus();
}

void MergeFindingsDialog::fill(const QList<MergeFinding> &findings)
{
    m_table->setObjectName(u"lstFindings"_s);
    m_table->setAccessibleName(tr("What was changed or left out"));
    QList<QStringList> rows;
    for (const MergeFinding &finding : findings)
        rows.append({titleOf(finding.kind), finding.project, finding.book, finding.acronym,
                     finding.detail});
    m_table->fill(rows);
}

QWidget *MergeFindingsDialog::buttons()
{
    auto *const box = closeBox(this);
    QPushButton *const copy = addReportButton(box, tr("C&opy"), u"cmdCopy"_s);
    copy->setToolTip(tr("Copy the selected lines, or all of them when none is selected (Ctrl+C)"));
    connect(copy, &QPushButton::clicked, this, &MergeFindingsDialog::cmdCopy_Click);
    return box;
}

void MergeFindingsDialog::cmdCopy_Click()
{
    QGuiApplication::clipboard()->setText(m_table->copied());
}
