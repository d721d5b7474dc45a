#include "controls/pages/CompareDialog.h"

#include "controls/pages/CompareModel.h"
#include "controls/pages/HitDelegate.h"

#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QTableView>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

CompareDialog::CompareDialog(const QString &title, const QString &theirs, const QString &mine,
                             QWidget *parent)
    : QDialog(parent)
    , m_model(new CompareModel(theirs, mine, palette(), this))
    , m_table(new QTableView(this))
    , m_count(new QLabel(this))
{
    setObjectName(u"dlgCompare"_s);
    setWindowTitle(tr("Compare: %1").arg(title));
    makeTable();
    layOut();
    const int differences = m_model->differences();
    m_count->setObjectName(u"lblDifferences"_s);
    m_count->setText(differences == 0   ? tr("The texts do not differ.")
                     : differences == 1 ? tr("1 difference")
                                        : tr("%1 differences").arg(differences));
    connect(new QShortcut(Qt::Key_F8, this), &QShortcut::activated, this, [this] { go(1); });
    connect(new QShortcut(Qt::SHIFT | Qt::Key_F8, this), &QShortcut::activated, this,
            [this] { go(-1); });
    go(1);
    const int letter = fontMetrics().averageCharWidth();
    resize(150 * letter, 40 * fontMetrics().height());
}

void CompareDialog::makeTable()
{
    m_table->setObjectName(u"lstDifferences"_s);
    m_table->setAccessibleName(tr("Lines of both versions"));
    m_table->setModel(m_model);
    m_table->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    m_table->setTabKeyNavigation(false);
    m_table->setShowGrid(false);
    m_table->setWordWrap(false);
    for (const int column : {CompareModel::LeftText, CompareModel::RightText})
        m_table->setItemDelegateForColumn(column, new HitDelegate(m_table));
    m_table->verticalHeader()->hide();
    m_table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_table->verticalHeader()->setDefaultSectionSize(m_table->fontMetrics().height() + 2);
    QHeaderView *header = m_table->horizontalHeader();
    header->setSectionsClickable(false);
    header->setMinimumSectionSize(1);
    header->setSectionResizeMode(QHeaderView::Stretch);
    const int digit = m_table->fontMetrics().horizontalAdvance(u'0');
    const auto digits = QString::number(m_model->rowCount()).size();
    for (const int column : {CompareModel::LeftLine, CompareModel::Sign, CompareModel::RightLine}) {
        header->setSectionResizeMode(column, QHeaderView::Fixed);
        header->resizeSection(column, digit * static_cast<int>(digits + 2));
    }
}

void CompareDialog::layOut()
{
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(stepRow());
    layout->addWidget(m_table, 1);
    layout->addWidget(answers());
    m_table->setFocus();
}

// Enter leads on, and never to an answer: one of them drops text.
QBoxLayout *CompareDialog::stepRow()
{
    auto *row = new QHBoxLayout;
    row->addWidget(m_count, 1);
    const auto add = [&](const char *name, const QString &text, const QString &tip, int direction) {
        auto *button = new QPushButton(text, this);
        button->setObjectName(QLatin1StringView(name));
        button->setToolTip(tip);
        button->setEnabled(m_model->differences() > 0);
        connect(button, &QPushButton::clicked, this, [this, direction] { go(direction); });
        row->addWidget(button);
        return button;
    };
    add("cmdNextDifference", tr("&Next"), tr("Next difference (F8)"), 1)->setDefault(true);
    add("cmdPreviousDifference", tr("&Previous"), tr("Previous difference (Shift+F8)"), -1);
    return row;
}

QWidget *CompareDialog::answers()
{
    auto *buttons = new QDialogButtonBox(this);
    const auto add = [&](const char *name, const QString &text, QDialogButtonBox::ButtonRole role,
                         int answer) {
        QPushButton *button = buttons->addButton(text, role);
        button->setObjectName(QLatin1StringView(name));
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, [this, answer] { done(answer); });
    };
    add("cmdTakeTheirs", tr("Take &theirs"), QDialogButtonBox::AcceptRole, Accepted);
    add("cmdKeepMine", tr("Keep &mine"), QDialogButtonBox::AcceptRole, Kept);
    add("cmdLater", tr("Decide &later"), QDialogButtonBox::RejectRole, Rejected);
    return buttons;
}

void CompareDialog::go(int direction)
{
    const int row = m_model->difference(
        m_table->currentIndex().isValid() ? m_table->currentIndex().row() : -1, direction);
    if (row < 0)
        return;
    m_table->selectRow(row);
    m_table->scrollTo(m_model->index(row, 0), QAbstractItemView::PositionAtCenter);
}
