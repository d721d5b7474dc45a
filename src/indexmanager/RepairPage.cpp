#include "indexmanager/RepairPage.h"

#include "controls/parts/Handler.h"
#include "controls/parts/PlainLabel.h"
#include "controls/parts/RowTable.h"
#include "indexmanager/ShortList.h"
#include "resources/Counted.h"
#include "resources/Icons.h"
#include "startup/frmProgBar.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <map>

using namespace Qt::StringLiterals;

RepairPage::RepairPage(Program &program, QWidget *parent)
    : QWidget(parent)
    , m_program(program)
    , m_index(std::make_shared<IdentifierIndex>())
    , m_table(new RowTable({{tr("Identifier"), 24},
                            {tr("Set"), 18},
                            {tr("Link file says"), 32},
                            {tr("Page lies at"), 32},
                            {tr("Why"), 0, TableColumn::State}},
                           this))
    , m_state(plainLabel({}, this))
{
    m_table->setObjectName(u"lstMoved"_s);
    m_table->setAccessibleName(tr("Pages that moved"));
    m_table->rowModel().setHasTicks();
    auto *const layout = new QVBoxLayout(this);
    layout->addWidget(plainLabel(
        tr("Looks in each set for the pages that its link file publishes and that are no longer "
           "there. Apply writes the new places of the ticked ones; the previous link file is kept "
           "in the _Backup folder of the set."),
        this));
    layout->addWidget(m_table, 1);
    layout->addWidget(m_state);
    layout->addWidget(makeButtons());
    connect(&m_table->rowModel(), &QAbstractItemModel::dataChanged, this,
            &RepairPage::enableCommands);
    setIndex(m_index);
}

QWidget *RepairPage::makeButtons()
{
    auto *const row = new QWidget(this);
    auto *const layout = new QHBoxLayout(row);
    layout->setContentsMargins({});
    addButton(row, tr("&Find moved pages"), u"cmdFindMoved"_s, &RepairPage::findMoved)
        ->setIcon(icon("find"_L1));
    m_tickAll = addButton(row, tr("Tick a&ll"), u"cmdTickAll"_s, &RepairPage::tickAll);
    m_tickNone = addButton(row, tr("Tick &none"), u"cmdTickNone"_s, &RepairPage::tickNone);
    m_apply = addButton(row, tr("&Apply"), u"cmdApply"_s, &RepairPage::apply);
    m_apply->setIcon(icon("save"_L1));
    layout->addStretch(1);
    return row;
}

QPushButton *RepairPage::addButton(QWidget *row, const QString &text, const QString &name,
                                   void (RepairPage::*clicked)())
{
    auto *const button = new QPushButton(text, row);
    button->setObjectName(name);
    connect(button, &QPushButton::clicked, this, clicked);
    row->layout()->addWidget(button);
    return button;
}

void RepairPage::setIndex(std::shared_ptr<const IdentifierIndex> index)
{
    m_index = std::move(index);
    m_moved.clear();
    m_table->setPlaceholder(tr("Press Find moved pages to look for them."));
    m_table->setRows({});
    m_state->clear();
    enableCommands();
}

void RepairPage::findMoved()
{
    handled(m_program, [this] {
        QList<MovedTarget> moved;
        QStringList problems;
        const auto work = [&](const Progress &progress) {
            moved = findMovedTargets(m_program, *m_index, problems, progress);
        };
        runWithProgress(m_program, window(), tr("Looking for moved pages..."), work);
        m_moved = std::move(moved);
        showMoved(problems);
    });
}

void RepairPage::showMoved(const QStringList &problems)
{
    QList<TableRow> rows;
    for (const MovedTarget &moved : std::as_const(m_moved)) {
        const bool isPublished = moved.because == MovedTarget::Because::Published;
        rows.append({{moved.identifier, moved.set, moved.before, moved.after,
                      isPublished ? tr("The only place that publishes the identifier")
                                  : tr("The only page of that name")},
                     isPublished ? LinkMark::Good : LinkMark::Warning,
                     isPublished ? QString()
                                 : tr("No single place of the set publishes this identifier now. "
                                      "The next scan drops it, unless it came from a legacy "
                                      "database."),
                     isPublished});
    }
    m_table->setPlaceholder(tr("No page was found that moved."));
    m_table->setRows(std::move(rows));
    const QString found = counted(m_moved.size(), tr("1 page was found elsewhere."),
                                  tr("%1 pages were found elsewhere."));
    m_state->setText(problems.isEmpty() ? found : found + u'\n' + shortList(problems, u"\n"_s));
    enableCommands();
}

void RepairPage::tick(bool ticked)
{
    m_table->rowModel().tickAll(ticked);
}

QList<MovedTarget> RepairPage::ticked() const
{
    QList<MovedTarget> found;
    const QList<TableRow> &rows = m_table->rowModel().rows();
    for (qsizetype row = 0; row < rows.size(); ++row) {
        if (rows.at(row).isTicked)
            found.append(m_moved.at(row));
    }
    return found;
}

void RepairPage::enableCommands()
{
    m_tickAll->setEnabled(!m_moved.isEmpty());
    m_tickNone->setEnabled(!m_moved.isEmpty());
    m_apply->setEnabled(!ticked().isEmpty());
}

/// Set by set: what goes wrong in one is told and leaves the others alone.
void RepairPage::apply()
{
    std::map<QString, QList<MovedTarget>> bySet;
    for (const MovedTarget &moved : ticked())
        bySet[moved.set].append(moved);
    QStringList problems;
    qsizetype written = 0;
    const auto work = [&](const Progress &progress) {
        int number = 0;
        for (const auto &[set, moved] : bySet) {
            progress.step(number++, static_cast<int>(bySet.size()), set);
            trap([&](const QvError &error) { problems.append(error.description()); },
                 [&] {
                     repairTargets(m_program, set, moved);
                     written += moved.size();
                 });
        }
    };
    handled(m_program,
            [&] { runWithProgress(m_program, window(), tr("Writing link files..."), work); });
    if (!problems.isEmpty())
        m_program.messages.show({shortList(problems, u"\n\n"_s)});
    Q_EMIT changed();
    if (written > 0)
        m_state->setText(
            counted(written, tr("1 new place was written."), tr("%1 new places were written.")));
}
