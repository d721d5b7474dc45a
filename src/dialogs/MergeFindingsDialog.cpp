#include "dialogs/MergeFindingsDialog.h"

#include "resources/Texts.h"

#include <QClipboard>
#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QLabel *plainLabel(const QString &text, QWidget *parent)
{
    auto *const label = new QLabel(text, parent);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

QTableWidgetItem *cell(const QString &text)
{
    auto *const item = new QTableWidgetItem(text);
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    item->setToolTip(Qt::convertFromPlainText(text));
    return item;
}

} // namespace

MergeFindingsDialog::MergeFindingsDialog(const MergeResult &result, const QString &nativeLogPath,
                                         QWidget *parent)
    : QDialog(parent)
    , m_table(new QTableWidget(this))
{
    setObjectName(u"MergeFindingsDialog"_s);
    setWindowTitle(text(Text::WindowTitle));
    auto *const layout = new QVBoxLayout(this);
    layout->addWidget(plainLabel(tr("The projects are merged. What is listed here was changed on "
                                    "the way or left out:"),
                                 this));
    fill(result.findings);
    fitColumns();
    layout->addWidget(m_table, 1);

    auto *const log = plainLabel(tr("The same list lies in %1").arg(result.logPath), this);
    log->setObjectName(u"lblLog"_s);
    log->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    log->setToolTip(Qt::convertFromPlainText(nativeLogPath));
    layout->addWidget(log);
    layout->addWidget(buttons());
    m_table->setFocus();
}

void MergeFindingsDialog::fill(const QList<MergeFinding> &findings)
{
    m_table->setObjectName(u"lstFindings"_s);
    m_table->setAccessibleName(tr("What was changed or left out"));
    m_table->setColumnCount(5);
    m_table->setHorizontalHeaderLabels(
        {tr("What"), tr("Project"), tr("Book"), tr("Acronym"), tr("Note")});
    m_table->setRowCount(static_cast<int>(findings.size()));
    int row = 0;
    for (const MergeFinding &finding : findings) {
        int column = 0;
        for (const QString &text : {titleOf(finding.kind), finding.project, finding.book,
                                    finding.acronym, finding.detail})
            m_table->setItem(row, column++, cell(text));
        ++row;
    }
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setAlternatingRowColors(true);
    m_table->setTabKeyNavigation(false);
    m_table->setWordWrap(false);
    m_table->horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder); // first as it happened
    m_table->setSortingEnabled(true);
}

void MergeFindingsDialog::fitColumns()
{
    const int letter = fontMetrics().averageCharWidth();
    QHeaderView *const header = m_table->horizontalHeader();
    m_table->resizeColumnsToContents();
    for (int column = 0; column < header->count(); ++column)
        header->resizeSection(column, std::min(header->sectionSize(column) + letter, 30 * letter));
    header->setStretchLastSection(true);
    header->setHighlightSections(false);
    m_table->verticalHeader()->hide();
    m_table->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
    resize(150 * letter, 26 * fontMetrics().height());
}

QWidget *MergeFindingsDialog::buttons()
{
    auto *const box = new QDialogButtonBox(QDialogButtonBox::Close, this);
    QPushButton *const close = box->button(QDialogButtonBox::Close);
    close->setObjectName(u"cmdClose"_s);
    close->setText(text(Text::Close));
    close->setDefault(true);
    QPushButton *const copy = box->addButton(tr("C&opy"), QDialogButtonBox::ActionRole);
    copy->setObjectName(u"cmdCopy"_s);
    copy->setToolTip(tr("Copy the selected lines, or all of them when none is selected (Ctrl+C)"));
    copy->setAutoDefault(false);
    connect(box, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(copy, &QPushButton::clicked, this, &MergeFindingsDialog::cmdCopy_Click);
    m_table->installEventFilter(this);
    return box;
}

// A table of its own accord copies one cell only.
bool MergeFindingsDialog::eventFilter(QObject *watched, QEvent *event)
{
    const bool isCopy = event->type() == QEvent::KeyPress
                        && static_cast<QKeyEvent *>(event)->matches(QKeySequence::Copy);
    if (isCopy)
        cmdCopy_Click();
    return isCopy || QDialog::eventFilter(watched, event);
}

/// In the order shown, cells parted by tabs, so that a spreadsheet takes them.
void MergeFindingsDialog::cmdCopy_Click()
{
    const QItemSelectionModel *const selection = m_table->selectionModel();
    const bool all = !selection->hasSelection();
    QString text;
    for (int row = 0; row < m_table->rowCount(); ++row) {
        if (all || selection->isRowSelected(row))
            text += line(row) + u'\n';
    }
    QGuiApplication::clipboard()->setText(text);
}

QString MergeFindingsDialog::line(int row) const
{
    QStringList cells;
    for (int column = 0; column < m_table->columnCount(); ++column)
        cells.append(m_table->item(row, column)->text());
    return cells.join(u'\t');
}
