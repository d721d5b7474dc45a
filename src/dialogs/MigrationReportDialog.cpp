#include "dialogs/MigrationReportDialog.h"

#include "dialogs/ListTable.h"
#include "dialogs/ReportParts.h"
#include "platform/Paths.h"
#include "resources/Counted.h"
#include "resources/Texts.h"

#include <QClipboard>
#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool isWhole(const ConversionReport &report)
{
    return report.problems.isEmpty()
           && std::all_of(report.counts.begin(), report.counts.end(),
                          [](const ConversionCount &count) { return count.read == count.written; });
}

} // namespace

MigrationReportDialog::MigrationReportDialog(const ConversionReport &report, const Paths &paths,
                                             QWidget *parent)
    : QDialog(parent)
    , m_summary(tr("The legacy book set %1 was migrated to the project %2.")
                    .arg(paths.database, lastComponent(report.folder)))
    , m_counts(
          new ListTable({tr("Table"), tr("Rows in the database"), tr("Rows taken over")}, this))
    , m_problems(new ListTable({tr("Table"), tr("Row"), tr("What happened")}, this))
    , m_problem(new QPlainTextEdit(this))
{
    setObjectName(u"MigrationReportDialog"_s);
    setWindowTitle(text(Text::WindowTitle));
    auto *const layout = new QVBoxLayout(this);
    QLabel *const summary = reportLabel(m_summary, this);
    summary->setObjectName(u"lblSummary"_s);
    layout->addWidget(summary);
    fillCounts(report.counts);
    layout->addWidget(namedBy(tr("&Tables of the database:"), m_counts));
    layout->addWidget(m_counts);
    layout->addWidget(problemPart(report), 1);
    layout->addWidget(logLabel(tr("This report lies in %1").arg(paths.log), paths.nativeLog, this));
    layout->addWidget(buttons());
    begin(!report.problems.isEmpty());
}

/// How large, and where the author begins.
void MigrationReportDialog::begin(bool hasProblems)
{
    const int lines = hasProblems ? 44 : 0;
    resize(reportSize(*this).width(),
           std::max(sizeHint().height(), lines * fontMetrics().height()));
    if (hasProblems)
        m_problems->setFocus();
    else
        findChild<QPushButton *>(u"cmdClose"_s)->setFocus();
}

void MigrationReportDialog::fillCounts(const QList<ConversionCount> &counts)
{
    constexpr int mostInSight = 12;
    m_counts->setObjectName(u"lstCounts"_s);
    m_counts->setAccessibleName(tr("Rows of each table"));
    m_counts->setNumbersFrom(1);
    QList<QStringList> rows;
    for (const ConversionCount &count : counts)
        rows.append({count.table, QString::number(count.read), QString::number(count.written)});
    m_counts->fill(rows);
    if (counts.size() <= mostInSight)
        m_counts->setFixedSize(m_counts->fullSize());
}

QWidget *MigrationReportDialog::namedBy(const QString &caption, QWidget *table)
{
    auto *const label = new QLabel(caption, this);
    label->setBuddy(table);
    return label;
}

/// The list of problems with the chosen one in full below it, or the good news.
QWidget *MigrationReportDialog::problemPart(const ConversionReport &report)
{
    auto *const part = new QWidget(this);
    auto *const layout = new QVBoxLayout(part);
    layout->setContentsMargins({});
    if (isWhole(report)) {
        QLabel *const whole = reportLabel(tr("Everything was taken over."), part);
        whole->setObjectName(u"lblWhole"_s);
        layout->addWidget(whole, 0, Qt::AlignTop);
    }
    const bool hasProblems = !report.problems.isEmpty();
    m_problems->setVisible(hasProblems);
    m_problem->setVisible(hasProblems);
    if (hasProblems) {
        fillProblems(report.problems);
        const QString count = counted(report.problems.size(), tr("1 problem"), tr("%1 problems"));
        layout->addWidget(namedBy(tr("&What happened on the way (%1):").arg(count), m_problems));
        layout->addWidget(m_problems, 1);
        layout->addWidget(m_problem);
    }
    return part;
}

void MigrationReportDialog::fillProblems(const QList<ConversionProblem> &problems)
{
    m_problems->setObjectName(u"lstProblems"_s);
    m_problems->setAccessibleName(tr("Problems"));
    QList<QStringList> rows;
    for (const ConversionProblem &problem : problems)
        rows.append({problem.table, problem.row, problem.text});
    m_problems->fill(rows);
    m_problem->setObjectName(u"txtProblem"_s);
    m_problem->setAccessibleName(tr("The problem in full"));
    m_problem->setReadOnly(true);
    m_problem->setTabChangesFocus(true);
    m_problem->setFixedHeight(fontMetrics().lineSpacing() * 3 + fontMetrics().lineSpacing() / 2);
    connect(m_problems, &QTableWidget::currentCellChanged, this,
            &MigrationReportDialog::showProblem);
    m_problems->setCurrentCell(0, 0, QItemSelectionModel::NoUpdate);
}

void MigrationReportDialog::showProblem()
{
    const QTableWidgetItem *const item = m_problems->item(m_problems->currentRow(), 2);
    m_problem->setPlainText(item ? item->text() : QString());
}

QWidget *MigrationReportDialog::buttons()
{
    auto *const box = closeBox(this);
    QPushButton *const log = addReportButton(box, tr("Open &Log"), u"cmdOpenLog"_s);
    log->setToolTip(tr("Show the report in the program for texts"));
    connect(log, &QPushButton::clicked, this, &MigrationReportDialog::logRequested);
    QPushButton *const copy = addReportButton(box, tr("C&opy"), u"cmdCopy"_s);
    copy->setToolTip(tr("Copy the selected problems, or the whole report when none is selected"));
    connect(copy, &QPushButton::clicked, this, &MigrationReportDialog::cmdCopy_Click);
    return box;
}

void MigrationReportDialog::cmdCopy_Click()
{
    const QString all = m_summary + u"\n\n"_s + m_counts->copied() + u'\n' + m_problems->copied();
    QGuiApplication::clipboard()->setText(m_problems->hasSelectedRows() ? m_problems->copied()
                                                                        : all);
}
