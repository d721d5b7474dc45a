#include "controls/links/LinkChangesDialog.h"

#include "controls/parts/PlainLabel.h"
#include "controls/parts/RowTable.h"

#include <QAction>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSet>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

TableRow rowFor(const LinkChange &change)
{
    TableRow row{{change.page, change.line > 0 ? QString::number(change.line) : QString(),
                  change.before, change.after}};
    if (!change.problem.isEmpty()) {
        row.texts.append(LinkChangesDialog::tr("Stays: %1").arg(change.problem));
        row.mark = LinkMark::Bad;
    } else if (change.isLocked) {
        row.texts.append(LinkChangesDialog::tr("The page is locked"));
        row.mark = LinkMark::Warning;
    } else {
        row.texts.append(LinkChangesDialog::tr("Changes"));
        row.mark = LinkMark::Good;
    }
    return row;
}

QList<TableRow> rowsFor(const PageMove &move)
{
    QList<TableRow> rows;
    for (const LinkChange &change : move.changes)
        rows.append(rowFor(change));
    const auto rank = [](const TableRow &row) {
        return row.mark == LinkMark::Bad ? 0 : row.mark == LinkMark::Warning ? 1 : 2;
    };
    std::stable_sort(rows.begin(), rows.end(),
                     [&](const TableRow &a, const TableRow &b) { return rank(a) < rank(b); });
    return rows;
}

} // namespace

LinkChangesDialog::LinkChangesDialog(const PageMove &move, const QString &what, bool moving,
                                     QWidget *parent)
    : QDialog(parent)
    , m_table(new RowTable({{tr("Page"), 28},
                            {tr("Line"), 7, TableColumn::Number},
                            {tr("Now"), 28},
                            {tr("Then"), 28},
                            {tr("What happens"), 0, TableColumn::State}},
                           this))
{
    setObjectName(u"LinkChangesDialog"_s);
    setWindowTitle(tr("Links that change"));
    layOut(move, what);
    addButtons(static_cast<QVBoxLayout *>(layout()), move, moving);
    resize(fontMetrics().averageCharWidth() * 120, fontMetrics().height() * 26);
    m_table->setFocus();
}

void LinkChangesDialog::layOut(const PageMove &move, const QString &what)
{
    auto *layout = new QVBoxLayout(this);
    QSet<QString> pages;
    for (const LinkChange &change : move.changes) {
        if (change.problem.isEmpty())
            pages.insert(change.page);
    }
    layout->addWidget(plainLabel(tr("%1: links that change: %2, in pages: %3.")
                                     .arg(what)
                                     .arg(move.changeCount())
                                     .arg(pages.size()),
                                 this));
    auto *filter = new QLineEdit(this);
    filter->setObjectName(u"txtFilter"_s);
    filter->setAccessibleName(tr("Filter the links"));
    filter->setPlaceholderText(tr("Filter (Ctrl+F)"));
    filter->setClearButtonEnabled(true);
    auto *find = new QAction(this);
    find->setShortcut(QKeySequence::Find);
    addAction(find);
    connect(find, &QAction::triggered, filter, qOverload<>(&QWidget::setFocus));
    connect(filter, &QLineEdit::textChanged, m_table, &RowTable::setFilter);
    layout->addWidget(filter);
    m_table->setObjectName(u"lstChanges"_s);
    m_table->setAccessibleName(tr("Links that change"));
    m_table->setRows(rowsFor(move));
    layout->addWidget(m_table, 1);
    const qsizetype locked = move.lockedPages().size();
    if (locked > 0)
        layout->addWidget(plainLabel(tr("Locked pages: %1. Their links can only change when they "
                                        "are unlocked.")
                                         .arg(locked),
                                     this));
}

void LinkChangesDialog::addButtons(QVBoxLayout *layout, const PageMove &move, bool moving)
{
    auto *buttons = new QDialogButtonBox(this);
    const QString change = !move.lockedPages().isEmpty() ? tr("&Unlock them and go on")
                           : moving                      ? tr("Change &links and move")
                                                         : tr("Change &links and rename");
    QPushButton *go = buttons->addButton(change, QDialogButtonBox::AcceptRole);
    go->setObjectName(u"cmdChangeLinks"_s);
    go->setDefault(true);
    QPushButton *only = buttons->addButton(moving ? tr("Move &only") : tr("Rename &only"),
                                           QDialogButtonBox::ActionRole);
    only->setObjectName(u"cmdFilesOnly"_s);
    only->setAutoDefault(false);
    only->setToolTip(
        tr("Links in other pages will lead nowhere; those in what moves are changed."));
    only->setVisible(move.withOwnLinksOnly().changeCount() < move.changeCount());
    QPushButton *cancel = buttons->addButton(QDialogButtonBox::Cancel);
    cancel->setObjectName(u"cmdCancel"_s);
    cancel->setAutoDefault(false);
    connect(go, &QPushButton::clicked, this, &QDialog::accept);
    connect(only, &QPushButton::clicked, this, [this] { done(FilesOnly); });
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    layout->addWidget(buttons);
}
