#include "indexmanager/SetsPage.h"

#include "controls/parts/Handler.h"
#include "controls/parts/PlainLabel.h"
#include "controls/parts/RowTable.h"
#include "indexmanager/ShortList.h"
#include "resources/Counted.h"
#include "resources/Icons.h"
#include "startup/Session.h"
#include "startup/frmProgBar.h"

#include <QHBoxLayout>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QString wordFor(ScanState state)
{
    switch (state) {
    case ScanState::Current:
        return SetsPage::tr("Up to date");
    case ScanState::Stale:
        return SetsPage::tr("Older than its pages");
    case ScanState::NeverScanned:
        return SetsPage::tr("No link file");
    case ScanState::NoSet:
        return SetsPage::tr("Cannot be read");
    }
    return {};
}

LinkMark markFor(ScanState state)
{
    switch (state) {
    case ScanState::Current:
        return LinkMark::Good;
    case ScanState::Stale:
        return LinkMark::Warning;
    case ScanState::NeverScanned:
        return LinkMark::Unchecked;
    case ScanState::NoSet:
        break;
    }
    return LinkMark::Bad;
}

} // namespace

SetsPage::SetsPage(Program &program, QWidget *parent)
    : QWidget(parent)
    , m_program(program)
    , m_index(std::make_shared<IdentifierIndex>())
    , m_table(new RowTable({{tr("State"), 26, TableColumn::State},
                            {tr("Set"), 26},
                            {tr("Scanned"), 20},
                            {tr("Identifiers"), 14, TableColumn::Number},
                            {tr("References"), 14, TableColumn::Number},
                            {tr("Remarks")}},
                           this))
    , m_state(plainLabel({}, this))
{
    m_table->setObjectName(u"lstSets"_s);
    m_table->setAccessibleName(tr("Sets"));
    auto *const layout = new QVBoxLayout(this);
    layout->addWidget(plainLabel(
        tr("A scan reads the pages of a set and writes its link file anew; nothing else is built."),
        this));
    layout->addWidget(m_table, 1);
    layout->addWidget(m_state);
    layout->addWidget(makeButtons());
    connect(m_table->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &SetsPage::enableCommands);
    enableCommands();
}

QWidget *SetsPage::makeButtons()
{
    auto *const row = new QWidget(this);
    m_selectStale = new QPushButton(tr("Select sta&le"), row);
    m_selectStale->setObjectName(u"cmdSelectStale"_s);
    m_selectStale->setToolTip(tr("Selects the sets that are older than their pages or have no link "
                                 "file"));
    m_scan = new QPushButton(icon("refresh"_L1), tr("Scan &again"), row);
    m_scan->setObjectName(u"cmdScan"_s);
    m_scan->setToolTip(tr("Runs the linking tool over the selected sets"));
    auto *const layout = new QHBoxLayout(row);
    layout->setContentsMargins({});
    layout->addWidget(m_selectStale);
    layout->addWidget(m_scan);
    layout->addStretch(1);
    connect(m_selectStale, &QPushButton::clicked, this, &SetsPage::selectStale);
    connect(m_scan, &QPushButton::clicked, this, &SetsPage::scanSelected);
    return row;
}

void SetsPage::setIndex(std::shared_ptr<const IdentifierIndex> index)
{
    m_index = std::move(index);
    m_isLookedAt = false;
    m_stale.clear();
    m_table->setRows({});
    m_state->clear();
}

void SetsPage::lookOnce()
{
    if (m_isLookedAt)
        return;
    m_isLookedAt = true;
    m_table->setPlaceholder(tr("The sets were not looked at. To look again, press Read again "
                               "(F5)."));
    handled(m_program, [this] {
        QList<SetScan> scans;
        const auto work = [&](const Progress &progress) { scans = scansOf(progress); };
        runWithProgress(m_program, window(), tr("Looking at the sets..."), work);
        showSets(scans);
    });
}

/// How the sets stand, in their order.
QList<SetScan> SetsPage::scansOf(const Progress &progress) const
{
    QList<SetScan> scans;
    const auto count = static_cast<int>(m_index->sets().size());
    for (const SetLinks &links : m_index->sets()) {
        const Progress piece = progress.piece(static_cast<int>(scans.size()), count, links.set);
        scans.append(scanStateOf(m_program.files, m_program.session.serverPath, links.set, piece));
    }
    return scans;
}

void SetsPage::showSets(const QList<SetScan> &scans)
{
    QList<TableRow> rows;
    m_stale.clear();
    for (const SetLinks &links : m_index->sets()) {
        const TableRow row = rowOf(links, scans.at(rows.size()));
        if (row.mark == LinkMark::Warning || row.mark == LinkMark::Unchecked)
            m_stale.append(static_cast<int>(rows.size()));
        rows.append(row);
    }
    m_table->setPlaceholder(tr("No set is listed in the catalogue."));
    m_state->setText(summaryOf(rows));
    m_table->setRows(std::move(rows));
    enableCommands();
}

/// What is to be done, in words; "" for no sets.
QString SetsPage::summaryOf(const QList<TableRow> &rows) const
{
    const auto unread = std::ranges::count(rows, LinkMark::Bad, &TableRow::mark);
    QStringList said;
    if (!m_stale.isEmpty())
        said.append(counted(m_stale.size(), tr("1 set should be scanned again."),
                            tr("%1 sets should be scanned again.")));
    if (unread > 0)
        said.append(counted(unread, tr("1 set cannot be read."), tr("%1 sets cannot be read.")));
    if (said.isEmpty() && !rows.isEmpty())
        said.append(tr("All sets are up to date."));
    return said.join(u' ');
}

TableRow SetsPage::rowOf(const SetLinks &links, const SetScan &scan) const
{
    const QLocale locale;
    const ScanState state = links.problem.isEmpty() ? scan.state : ScanState::NoSet;
    // This form of a time sorts as a text.
    const QString scanned = state == ScanState::NoSet
                                ? QString()
                                : scan.scanned.toLocalTime().toString(u"yyyy-MM-dd HH:mm"_s);
    return {{wordFor(state), links.set, scanned, locale.toString(links.targets.size()),
             locale.toString(links.references.size()), whatToSay(links, scan)},
            markFor(state)};
}

QString SetsPage::whatToSay(const SetLinks &links, const SetScan &scan) const
{
    QStringList said;
    const QString result = m_results.value(links.set);
    if (!result.isEmpty())
        said.append(tr("Last scan: %1").arg(result));
    const QString problem = scan.problem.isEmpty() ? links.problem : scan.problem;
    if (!problem.isEmpty() && !result.contains(problem))
        said.append(problem);
    if (!scan.newer.isEmpty())
        said.append(tr("Changed: %1.").arg(shortList(scan.newer, u", "_s)));
    return said.join(u' ');
}

void SetsPage::selectStale()
{
    m_table->selectRows(m_stale);
    m_table->setFocus();
}

void SetsPage::enableCommands()
{
    m_selectStale->setEnabled(!m_stale.isEmpty());
    m_scan->setEnabled(m_table->selectionModel()->hasSelection());
}

void SetsPage::scanSelected()
{
    QStringList sets;
    for (const int row : m_table->selectedRows())
        sets.append(m_index->sets()[static_cast<size_t>(row)].set);
    handled(m_program, [&] {
        const auto work = [&](const Progress &progress) { scan(sets, progress); };
        runWithProgress(m_program, window(), tr("Scanning the sets..."), work);
    });
    Q_EMIT changed(); // also by what was scanned before a stop
}

/// What goes wrong in one set is told and leaves the others alone.
void SetsPage::scan(const QStringList &sets, const Progress &progress)
{
    for (int number = 0; number < sets.size(); ++number) {
        const QString &set = sets.at(number);
        const Progress piece = progress.piece(number, static_cast<int>(sets.size()), set);
        const auto failed = [&](const QvError &error) { m_results[set] = error.description(); };
        trap(failed, [&] { noteReport(set, scanAgain(m_program, set, piece)); });
    }
}

void SetsPage::noteReport(const QString &set, const ToolReport &report)
{
    m_results[set] = report.outcome == ToolReport::Outcome::Failed
                         ? tr("It failed: %1").arg(report.summary)
                         : report.summary;
}
