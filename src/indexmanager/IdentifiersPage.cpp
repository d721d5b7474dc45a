#include "indexmanager/IdentifiersPage.h"

#include "controls/Resizer.h"
#include "controls/parts/Handler.h"
#include "controls/parts/ListCommands.h"
#include "controls/parts/PlainLabel.h"
#include "controls/parts/RowTable.h"
#include "indexmanager/PageOpening.h"
#include "reports/LongListView.h"
#include "resources/Counted.h"
#include "startup/frmProgBar.h"

#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QLocale>
#include <QShortcut>
#include <QSplitter>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

using Spot = IdentifierIndex::Spot;

IdentifiersPage::IdentifiersPage(Program &program, QWidget *parent)
    : QWidget(parent)
    , m_program(program)
    , m_model(new IdentifiersModel(this))
    , m_filter(new QLineEdit(this))
    , m_states(new QComboBox(this))
    , m_list(new LongListView(this))
    , m_counts(plainLabel({}, this))
    , m_details(
          new RowTable({{tr("Part"), 24, TableColumn::State}, {tr("Set"), 26}, {tr("Page")}}, this))
{
    m_list->setObjectName(u"lstIdentifiers"_s);
    m_list->setAccessibleName(tr("Identifiers"));
    m_details->setObjectName(u"lstPlaces"_s);
    m_details->setAccessibleName(tr("Places of the identifier"));
    m_details->setPlaceholder(tr("Choose an identifier to see who publishes it and who asks for "
                                 "it."));
    auto *const parts = new QSplitter(Qt::Vertical, this);
    parts->setObjectName(u"splIdentifiers"_s);
    parts->addWidget(m_list);
    parts->addWidget(m_details);
    parts->setStretchFactor(0, 3);
    parts->setStretchFactor(1, 1);
    parts->setChildrenCollapsible(false);
    auto *const layout = new QVBoxLayout(this);
    layout->addWidget(makeFilterRow());
    layout->addWidget(parts, 1);
    layout->addWidget(m_counts);
    setUpList();
    connectList();
    new Resizer(u"IndexManagerIdentifiers"_s, parts);
}

QWidget *IdentifiersPage::makeFilterRow()
{
    auto *const row = new QWidget(this);
    m_filter->setObjectName(u"txtFilter"_s);
    m_filter->setClearButtonEnabled(true);
    m_filter->setPlaceholderText(tr("Words of the identifier, its set or its page"));
    m_filter->setToolTip(tr("Shows the identifiers that hold all of these words (Ctrl+F)"));
    m_states->setObjectName(u"cboState"_s);
    m_states->addItem(tr("All"));
    for (const IdentifierState state : allIdentifierStates)
        m_states->addItem(linkMarkIcon(markFor(state)), wordFor(state), static_cast<int>(state));
    auto *const words = new QLabel(tr("&Filter:"), row);
    words->setBuddy(m_filter);
    auto *const states = new QLabel(tr("Sh&ow:"), row);
    states->setBuddy(m_states);
    auto *const layout = new QHBoxLayout(row);
    layout->setContentsMargins({});
    layout->addWidget(words);
    layout->addWidget(m_filter, 1);
    layout->addWidget(states);
    layout->addWidget(m_states);
    return row;
}

void IdentifiersPage::setUpList()
{
    m_list->setTabKeyNavigation(false);
    m_list->setAlternatingRowColors(true);
    m_list->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_list->setTextElideMode(Qt::ElideMiddle);
    m_list->setShowGrid(false);
    m_list->setWordWrap(false);
    m_list->verticalHeader()->hide();
    m_list->setModel(m_model);
    QHeaderView *const header = m_list->horizontalHeader();
    const int letter = fontMetrics().averageCharWidth();
    int column = 0;
    header->setMinimumSectionSize(16 * letter);
    for (const int letters : {32, 24, 26, 50, 16})
        header->resizeSection(column++, letters * letter);
    header->setSectionResizeMode(static_cast<int>(IdentifierColumn::Place), QHeaderView::Stretch);
    header->setHighlightSections(false);
    m_list->setSortedBy(m_sortedBy, m_sortOrder);
    m_list->setContextMenuPolicy(Qt::ActionsContextMenu);
    addListAction(m_list, tr("&Open page"), "preview"_L1, {}, [this] { openIdentifier(); });
    addListAction(m_list, tr("&Copy"), "copy"_L1, QKeySequence::Copy,
                  [this] { copyIdentifiers(); });
}

void IdentifiersPage::connectList()
{
    connect(m_list->horizontalHeader(), &QHeaderView::sortIndicatorChanged, this,
            &IdentifiersPage::sortAgain);
    connect(m_model, &QAbstractItemModel::modelReset, this, &IdentifiersPage::showState);
    connect(m_list->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &IdentifiersPage::showDetails);
    connect(m_list, &QAbstractItemView::activated, this, &IdentifiersPage::openIdentifier);
    connect(m_list, &LongListView::typed, this, [this](QKeyEvent *key) {
        m_filter->setFocus();
        QCoreApplication::sendEvent(m_filter, key);
    });
    connect(m_filter, &QLineEdit::textChanged, this, &IdentifiersPage::filterAgain);
    auto *const clearFilter = new QShortcut(Qt::Key_Escape, m_filter);
    clearFilter->setContext(Qt::WidgetShortcut);
    connect(clearFilter, &QShortcut::activated, m_filter, &QLineEdit::clear);
    connect(m_filter, &QLineEdit::returnPressed, this, [this] { m_list->setFocus(); });
    connect(m_states, &QComboBox::currentIndexChanged, this, &IdentifiersPage::filterAgain);
    connect(m_details, &RowTable::rowActivated, this, &IdentifiersPage::openDetail);
}

/// The order stays, and so does the identifier at hand.
void IdentifiersPage::setIndex(std::shared_ptr<const IdentifierIndex> index,
                               const QString &whyEmpty)
{
    m_whyEmpty = whyEmpty;
    const int row = m_list->currentIndex().row();
    const QString before = row < 0 ? QString() : m_model->textAt(row);
    const quint32 count = index->count();
    m_model->setIndex(std::move(index), asListed(count)); // they are numbered in their order
    m_sortedBy = 0;
    m_sortOrder = Qt::AscendingOrder;
    const QHeaderView *const header = m_list->horizontalHeader();
    if (header->sortIndicatorSection() != 0 || header->sortIndicatorOrder() != m_sortOrder)
        sortAgain();
    choose(before);
}

void IdentifiersPage::choose(const QString &identifier)
{
    const RowOrder &shown = m_model->shown();
    const auto found = std::ranges::find_if(
        shown, [&](quint32 number) { return m_model->index().text(number) == identifier; });
    if (found != shown.end())
        m_list->selectRow(static_cast<int>(found - shown.begin()));
}

void IdentifiersPage::setFocusToFilter()
{
    m_filter->setFocus(Qt::ShortcutFocusReason);
    m_filter->selectAll();
}

/// Takes the order from the header; when the author stops, the header goes back.
void IdentifiersPage::sortAgain()
{
    const QHeaderView *const header = m_list->horizontalHeader();
    const int column = std::max(0, header->sortIndicatorSection()); // none is by identifier
    const Qt::SortOrder order =
        header->sortIndicatorSection() < 0 ? Qt::AscendingOrder : header->sortIndicatorOrder();
    const bool isSorted = wasDone(m_program, [&] {
        RowOrder sorted;
        runWithProgress(m_program, window(), tr("Sorting..."), [&](const Progress &progress) {
            sorted = sortedIdentifiers(m_model->index(), static_cast<IdentifierColumn>(column),
                                       order, progress);
        });
        m_model->setOrder(std::move(sorted));
    });
    if (isSorted) {
        m_sortedBy = column;
        m_sortOrder = order;
    }
    m_list->setSortedBy(m_sortedBy, m_sortOrder);
}

void IdentifiersPage::filterAgain()
{
    const QVariant state = m_states->currentData();
    m_model->setFilter(IdentifierFilter(
        m_filter->text(), state.isValid()
                              ? std::optional(static_cast<IdentifierState>(state.toInt()))
                              : std::nullopt));
}

void IdentifiersPage::showState()
{
    const IdentifierIndex &index = m_model->index();
    QString counts = counted(index.count(), tr("1 identifier"), tr("%1 identifiers"));
    counts += u" · "_s + counted(qsizetype(index.sets().size()), tr("1 set"), tr("%1 sets"));
    const auto unread = std::ranges::count_if(
        index.sets(), [](const SetLinks &links) { return !links.problem.isEmpty(); });
    if (unread > 0)
        counts += u" · "_s
                  + counted(unread, tr("1 set could not be read (see Sets)"),
                            tr("%1 sets could not be read (see Sets)"));
    if (m_model->isFiltered())
        counts += u" · "_s + tr("shown %1").arg(QLocale().toString(m_model->rowCount()));
    m_counts->setText(counts);
    m_list->setPlaceholder(index.count() == 0         ? m_whyEmpty
                           : m_model->rowCount() == 0 ? tr("No identifier passes the filter.")
                                                      : QString());
    if (m_model->rowCount() > 0)
        m_list->selectRow(0);
    showDetails();
}

void IdentifiersPage::showDetails()
{
    QList<TableRow> rows;
    m_detailPaths.clear();
    const int row = m_list->currentIndex().row();
    if (row >= 0 && row < m_model->rowCount()) {
        const IdentifierIndex &index = m_model->index();
        const quint32 identifier = m_model->numberAt(row);
        const auto add = [&](const QString &part, Spot spot, QStringView path, LinkMark mark) {
            m_detailPaths.append(path.toString());
            const QString &set = index.setOf(spot);
            rows.append({{part, set, placeInSet(set, path)}, mark});
        };
        for (const Spot spot : index.targets(identifier)) {
            const bool isThere = index.isThere(spot);
            add(isThere ? tr("Published") : tr("Published, missing"), spot, index.targetPath(spot),
                isThere ? LinkMark::Good : LinkMark::Bad);
        }
        for (const Spot spot : index.references(identifier)) {
            const bool isGood = index.isGood(spot);
            add(isGood ? tr("Asked for") : tr("Asked for, dead"), spot, index.askingPath(spot),
                isGood ? LinkMark::Good : LinkMark::Bad);
        }
    }
    m_details->setRows(std::move(rows));
}

void IdentifiersPage::openIdentifier()
{
    if (!m_detailPaths.isEmpty())
        openDetail(0);
}

void IdentifiersPage::copyIdentifiers()
{
    m_model->finishFilter(); // the rows stay what they are while they are copied
    QStringList lines;
    const auto work = [&, rows = m_list->selectedRows()](const Progress &progress) {
        for (const int row : rows) {
            progress.step(static_cast<int>(lines.size()), static_cast<int>(rows.size()));
            lines.append(m_model->line(row));
        }
    };
    const bool isCopied =
        wasDone(m_program, [&] { runWithProgress(m_program, window(), tr("Copying..."), work); });
    if (isCopied && !lines.isEmpty())
        QGuiApplication::clipboard()->setText(lines.join(u'\n'));
}

void IdentifiersPage::openDetail(int row)
{
    handled(m_program, [&] { openStoredPage(m_program, m_detailPaths.at(row)); });
}
