#include "reports/frmIBLReport.h"

#include "platform/Clock.h"
#include "platform/FileSystem.h"
#include "platform/Paths.h"
#include "platform/Processes.h"
#include "platform/SystemLocale.h"
#include "reports/LinkReport.h"
#include "resources/Icons.h"
#include "resources/Texts.h"
#include "startup/frmProgBar.h"
#include "ui_frmIBLReport.h"

#include <QClipboard>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLocale>
#include <QMenu>
#include <QShortcut>
#include <QWindow>

using namespace Qt::StringLiterals;

frmIBLReport::frmIBLReport(Program &program, QWidget *parent)
    : FormWindow(program, parent)
    , ui(std::make_unique<Ui::frmIBLReport>())
    , m_model(new LinkReportModel(program.files, this))
{
    setWindowFlag(Qt::Window);
    setWindowModality(Qt::ApplicationModal);
    ui->setupUi(this);
    ui->LViewReport->setModel(m_model);
    const int letter = fontMetrics().averageCharWidth();
    ui->LViewReport->setColumnWidth(static_cast<int>(LinkColumn::Status), 14 * letter);
    ui->LViewReport->setColumnWidth(static_cast<int>(LinkColumn::LinkID), 34 * letter);
    connectList();
    connectCommands();
    addSortMenu();
    connect(ui->cmdGenerateReport, &QPushButton::clicked, this,
            &frmIBLReport::cmdGenerateReport_Click);
    connect(ui->cmdSaveAs, &QPushButton::clicked, this, &frmIBLReport::cmdSaveAs_Click);
    connect(ui->cmdListAgain, &QPushButton::clicked, this, &frmIBLReport::listAgain);
    connect(ui->cmdClose, &QPushButton::clicked, this, &QWidget::close);
    const auto onKeys = [this](const QKeySequence &keys, auto *button) {
        connect(new QShortcut(keys, this), &QShortcut::activated, button, &QPushButton::click);
    };
    onKeys(QKeySequence::Save, ui->cmdSaveAs);
    onKeys(Qt::Key_F5, ui->cmdListAgain);
}

frmIBLReport::~frmIBLReport() = default;

void frmIBLReport::connectList()
{
    connect(m_model, &QAbstractItemModel::modelReset, this, &frmIBLReport::showState);
    connect(ui->LViewReport->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &frmIBLReport::enableRowCommands);
    connect(ui->LViewReport, &QAbstractItemView::activated, this, &frmIBLReport::openPage);
    connect(ui->LViewReport->horizontalHeader(), &QHeaderView::sortIndicatorChanged, this,
            &frmIBLReport::sortAgain);
    connect(ui->LViewReport, &LongListView::typed, this, [this](QKeyEvent *key) {
        ui->txtFilter->setFocus();
        QCoreApplication::sendEvent(ui->txtFilter, key);
    });
    connect(ui->txtFilter, &QLineEdit::textChanged, this, &frmIBLReport::filterAgain);
    connect(ui->txtFilter, &QLineEdit::returnPressed, this,
            [this] { ui->LViewReport->setFocus(); });
    connect(ui->cboShow, &QComboBox::currentIndexChanged, this, &frmIBLReport::filterAgain);
    connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, this, [this] {
        ui->txtFilter->setFocus(Qt::ShortcutFocusReason);
        ui->txtFilter->selectAll();
    });
}

/// What the menu of the list offers.
void frmIBLReport::connectCommands()
{
    ui->mnuOpen->setIcon(icon("preview"_L1));
    ui->mnuCopy->setIcon(icon("copy"_L1));
    ui->mnuCopy->setShortcut(QKeySequence::Copy);
    for (QAction *const command : {ui->mnuOpen, ui->mnuCopy, ui->mnuCopyPath}) {
        command->setShortcutContext(Qt::WidgetShortcut);
        ui->LViewReport->addAction(command);
    }
    connect(ui->mnuOpen, &QAction::triggered, this, &frmIBLReport::openPage);
    connect(ui->mnuCopy, &QAction::triggered, this,
            [this] { copyRows([this](int row) { return m_model->line(row); }); });
    connect(ui->mnuCopyPath, &QAction::triggered, this,
            [this] { copyRows([this](int row) { return m_model->nativeAddress(row); }); });
}

// For those who do not use a mouse.
void frmIBLReport::addSortMenu()
{
    auto *const menu = new QMenu(tr("&Sort by"), this);
    for (const int column : {0, 1, 2, -1}) {
        const QString title =
            m_model->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
        menu->addAction(column < 0 ? tr("As listed") : title, this, [this, column] {
            const bool turn = column == m_sortedBy && m_sortOrder == Qt::AscendingOrder;
            ui->LViewReport->horizontalHeader()->setSortIndicator(
                column, turn ? Qt::DescendingOrder : Qt::AscendingOrder);
        });
    }
    ui->LViewReport->addAction(menu->menuAction());
}

// The window is there before the links are looked for, which can take a while.
void frmIBLReport::Form_Load()
{
    inProcedure("Form_Load"_L1, [this] {
        loadCaptions();
        showTime();
        ui->LViewReport->setFocus();
        show();
        collect(IBD);
    });
}

void frmIBLReport::loadCaptions()
{
    setWindowTitle(text(Text::LinkReport));
    ui->SSTab->addTab(text(Text::IbdReport));
    ui->SSTab->addTab(text(Text::IbsReport));
    ui->lblDateTime->setText(text(Text::ReportGeneratedOn));
    ui->cmdGenerateReport->setText(text(Text::GenerateReport));
    ui->cmdClose->setText(text(Text::Close));
    ui->cmdGenerateReport->setIcon(icon("export"_L1));
    ui->cmdSaveAs->setIcon(icon("save"_L1));
    ui->cmdListAgain->setIcon(icon("refresh"_L1));

    // Queued: the mouse button is let go of before long work begins. The author may be back by
    // then.
    const auto tabChanged = [this] {
        if (ui->SSTab->currentIndex() != m_tab)
            SSTab_Click(m_tab);
    };
    connect(ui->SSTab, &QTabBar::currentChanged, this, tabChanged, Qt::QueuedConnection);
    const auto clickedAgain = [this](int tab) {
        if (tab == m_tab && m_model->links().count() == 0)
            listAgain();
    };
    connect(ui->SSTab, &QTabBar::tabBarClicked, this, clickedAgain, Qt::QueuedConnection);
}

void frmIBLReport::showTime()
{
    const QDateTime now = m_program.clock.now();
    ui->lblDateTimeValue->setText(m_program.locale.shortDate(now.date()) + u' '
                                  + QLocale().toString(now.time(), QLocale::ShortFormat));
}

void frmIBLReport::SSTab_Click(int PreviousTab)
{
    inProcedure("SSTab_Click"_L1, [&] {
        m_tab = ui->SSTab->currentIndex();
        collect(PreviousTab == 1 ? IBD : IBS);
    });
}

void frmIBLReport::listAgain()
{
    inProcedure("Form_Load"_L1, [this] {
        showTime();
        collect(m_kind);
    });
}

/// Lists anew. When that fails or is stopped, the list is empty and says so, and there is nothing
/// to write: the one report that is ever generated would be empty.
void frmIBLReport::collect(Kind kind)
{
    m_kind = kind;
    ui->lblMessage->clear();
    m_noLinks.clear();
    m_model->setLinks({}, {});
    QString noLinks = tr("The links could not be listed. To try once more, press List again (F5).");
    bool listed = false;
    inProcedure(kind == IBD ? "GetIBD_Details"_L1 : "GetIBS_Details"_L1, [&] {
        LinkEntries links;
        LinkOrder rows;
        const auto work = [&](const Progress &progress) {
            LinkReport report(m_program);
            links = kind == IBD ? report.GetIBD_Details(progress) : report.GetIBS_Details(progress);
            rows = ordered(links, progress);
        };
        if (!runUntilStopped(tr("Checking links..."), work)) {
            noLinks = tr("The listing was stopped. To list the links, press List again (F5).");
            return;
        }
        listed = true;
        if (links.UBound() < 1) // not with two empty slots
            m_program.messages.show({text(Text::NoLinks)});
        noLinks = kind == IBD ? tr("No project on the server publishes link targets.")
                              : tr("No project on the server refers to link targets.");
        m_model->setLinks(std::move(links), std::move(rows));
    });
    m_noLinks = noLinks;
    showState();
    ui->cmdGenerateReport->setEnabled(listed);
    ui->cmdSaveAs->setEnabled(listed);
}

LinkOrder frmIBLReport::ordered(const LinkEntries &links, const Progress &progress) const
{
    return m_sortedBy < 0
               ? allLinks(links)
               : sortedLinks(links, static_cast<LinkColumn>(m_sortedBy), m_sortOrder, progress);
}

/// Takes the order from the header; when the author stops, the header goes back.
void frmIBLReport::sortAgain()
{
    const QHeaderView *const header = ui->LViewReport->horizontalHeader();
    const int column = std::exchange(m_sortedBy, header->sortIndicatorSection());
    const Qt::SortOrder order = std::exchange(m_sortOrder, header->sortIndicatorOrder());
    inProcedure("LViewReport_ColumnClick"_L1, [&] {
        LinkOrder rows;
        const auto work = [&](const Progress &progress) {
            rows = ordered(m_model->links(), progress);
        };
        if (runUntilStopped(tr("Sorting..."), work)) {
            m_model->setOrder(std::move(rows));
            return;
        }
        m_sortedBy = column;
        m_sortOrder = order;
        ui->LViewReport->setSortedBy(column, order);
    });
}

void frmIBLReport::filterAgain()
{
    const auto which = static_cast<LinkFilter::Which>(ui->cboShow->currentIndex());
    m_model->setFilter(LinkFilter(ui->txtFilter->text(), which));
}

void frmIBLReport::showState()
{
    const LinkEntries &links = m_model->links();
    const QLocale locale;
    QString counts = tr("%1 OK, %2 BAD")
                         .arg(locale.toString(links.goodCount()),
                              locale.toString(links.count() - links.goodCount()));
    if (m_model->isFiltered())
        counts += tr(", shown %1").arg(locale.toString(m_model->rowCount()));
    ui->lblCounts->setText(counts);
    QString placeholder;
    if (links.count() == 0)
        placeholder = m_noLinks;
    else if (m_model->rowCount() == 0)
        placeholder = tr("No link passes the filter.");
    ui->LViewReport->setPlaceholder(placeholder);
    enableRowCommands();
}

void frmIBLReport::enableRowCommands()
{
    const bool any = ui->LViewReport->selectionModel()->hasSelection();
    for (QAction *const command : {ui->mnuOpen, ui->mnuCopy, ui->mnuCopyPath})
        command->setEnabled(any);
}

/// Opens the page of the current row in the browser, without its anchor.
void frmIBLReport::openPage()
{
    const QModelIndex current = ui->LViewReport->currentIndex();
    if (!current.isValid())
        return;
    const auto openIt = [&] {
        const QString address = m_model->address(current.row());
        const QString docs = m_model->links().docs();
        const auto isThere = [this](const std::optional<LinkedPage> &page) {
            return page && m_program.files.fileExists(page->path);
        };
        auto page = pageOf(address, docs, m_kind == IBD);
        if (m_kind == IBS && !isThere(page))
            page = pageOf(address, docs, true);
        if (!page)
            throw QvError(PathFileAccess, {},
                          tr("%1 lies outside the Docs folder and is not opened").arg(address));
        if (!isThere(page))
            throw QvError(FileNotFound, {}, u"File not found: "_s + page->path);
        m_program.processes.openPage(page->path);
    };
    inProcedure("LViewReport_DblClick"_L1, openIt);
}

void frmIBLReport::copyRows(const std::function<QString(int row)> &textOf)
{
    inProcedure("LViewReport_Copy"_L1, [&] {
        m_model->finishFilter(); // the rows stay what they are while they are copied
        QStringList lines;
        const auto work = [&, rows = ui->LViewReport->selectedRows()](const Progress &progress) {
            for (const int row : rows) {
                progress.step(static_cast<int>(lines.size()), static_cast<int>(rows.size()));
                lines.append(textOf(row));
            }
        };
        if (runUntilStopped(tr("Copying..."), work) && !lines.isEmpty())
            QGuiApplication::clipboard()->setText(lines.join(u'\n'));
    });
}

// Keeps it in front of the window that it belongs to.
void frmIBLReport::showEvent(QShowEvent *event)
{
    const QWidget *const behind = QApplication::activeWindow();
    if (behind && behind != this && !event->spontaneous()) {
        windowHandle()->setTransientParent(behind->windowHandle());
        move(behind->geometry().center() - rect().center());
    }
    FormWindow::showEvent(event);
}

QAbstractButton *frmIBLReport::cancelButton() const
{
    return ui->cmdClose;
}

/// False when the author pressed Stop.
bool frmIBLReport::runUntilStopped(const QString &caption,
                                   const std::function<void(const Progress &)> &work)
{
    try {
        runWithProgress(m_program, this, caption, work);
    } catch (const Unwinding &unwinding) {
        if (unwinding.reason != Unwinding::Reason::Stopped)
            throw;
        return false;
    }
    return true;
}

void frmIBLReport::inProcedure(QLatin1StringView procedure, const std::function<void()> &body,
                               const QString &advice)
{
    const auto shape = [&](const QvError &error) {
        Message message;
        message.text = u"Error %1 QV_DeveloperUI-frmIBLReport::%2 : %3"_s.arg(
            QString::number(error.number()), procedure, error.description());
        message.details = advice;
        return message;
    };
    trapped(shape, body);
}
