#include "indexmanager/frmIndexManager.h"

#include "controls/Resizer.h"
#include "controls/parts/Handler.h"
#include "controls/parts/PlainLabel.h"
#include "indexmanager/IdentifiersPage.h"
#include "indexmanager/RepairPage.h"
#include "indexmanager/SetsPage.h"
#include "indexmanager/WhoLinksPage.h"
#include "resources/Icons.h"
#include "resources/Texts.h"
#include "startup/ExternalPrograms.h"
#include "startup/HelpTopics.h"
#include "startup/Session.h"
#include "startup/frmProgBar.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QPushButton>
#include <QShortcut>
#include <QTabBar>
#include <QTabWidget>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Why there may be no identifiers in what was read.
QString whyEmpty(const IdentifierIndex &index)
{
    if (index.sets().empty())
        return frmIndexManager::tr("No set is listed in the catalogue.");
    const bool isWhole = std::ranges::all_of(
        index.sets(), [](const SetLinks &links) { return links.problem.isEmpty(); });
    return isWhole ? frmIndexManager::tr("No set of this installation publishes identifiers or "
                                         "asks for any.")
                   : frmIndexManager::tr("No identifier was found. Some sets could not be read; "
                                         "Sets says why.");
}

} // namespace

frmIndexManager::frmIndexManager(Program &program, QWidget *parent)
    : FormWindow(program, parent)
    , m_index(std::make_shared<IdentifierIndex>())
    , m_server(plainLabel({}, this))
    , m_head(makeHead())
    , m_tabs(new QTabWidget(this))
    , m_identifiers(new IdentifiersPage(program, this))
    , m_whoLinks(new WhoLinksPage(program, this))
    , m_sets(new SetsPage(program, this))
    , m_repair(new RepairPage(program, this))
{
    setObjectName(u"frmIndexManager"_s);
    setWindowTitle(text(Text::IndexManagerCaption));
    makePages();
    auto *const layout = new QVBoxLayout(this);
    layout->addWidget(m_head);
    layout->addWidget(m_tabs, 1);
    connect(new QShortcut(Qt::Key_F5, this), &QShortcut::activated, this,
            &frmIndexManager::readAgain);
    connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, this, [this] {
        m_tabs->setCurrentWidget(m_identifiers);
        m_identifiers->setFocusToFilter();
    });
    const int letter = fontMetrics().averageCharWidth();
    resize(170 * letter, 100 * letter);
    new Resizer(u"IndexManager"_s, this);
}

QWidget *frmIndexManager::makeHead()
{
    auto *const row = new QWidget(this);
    auto *const again = new QPushButton(icon("refresh"_L1), tr("Read a&gain"), row);
    again->setObjectName(u"cmdReadAgain"_s);
    again->setToolTip(tr("Reads the link files and looks for the pages again (F5)"));
    connect(again, &QPushButton::clicked, this, &frmIndexManager::readAgain);
    m_help = new QPushButton(icon("help"_L1), text(Text::Help), row);
    m_help->setObjectName(u"cmdHelp"_s);
    m_help->setToolTip(tr("Shows what the index manager can do (F1)"));
    connect(m_help, &QPushButton::clicked, this, &frmIndexManager::showHelp);
    auto *const layout = new QHBoxLayout(row);
    layout->setContentsMargins({});
    layout->addWidget(m_server, 1);
    layout->addWidget(again);
    layout->addWidget(m_help);
    return row;
}

void frmIndexManager::makePages()
{
    m_tabs->setObjectName(u"tabPages"_s);
    m_tabs->tabBar()->setAccessibleName(tr("What to look at"));
    m_tabs->addTab(m_identifiers, tr("&Identifiers"));
    m_tabs->addTab(m_whoLinks, tr("&Who links here"));
    m_tabs->addTab(m_sets, tr("&Sets"));
    m_tabs->addTab(m_repair, tr("&Repair"));
    // Queued: the mouse button is let go of before long work begins.
    connect(m_tabs, &QTabWidget::currentChanged, this, &frmIndexManager::lookAtSets,
            Qt::QueuedConnection);
    connect(m_sets, &SetsPage::changed, this, &frmIndexManager::readAgain);
    connect(m_repair, &RepairPage::changed, this, &frmIndexManager::readAgain);
}

// The window is there before the link files are read, which can take a while.
void frmIndexManager::Form_Load()
{
    m_server->setText(tr("Installation: %1").arg(m_program.session.serverPath));
    show();
    readAgain();
}

void frmIndexManager::readAgain()
{
    auto index = std::make_shared<IdentifierIndex>();
    const auto work = [&](const Progress &progress) {
        *index = readIdentifiers(m_program, progress);
    };
    const bool isRead = wasDone(m_program, [&] {
        runWithProgress(m_program, this, tr("Reading the link files..."), work);
    });
    showIndex(index, isRead ? whyEmpty(*index)
                            : tr("The link files were not read. To read them, press Read again "
                                 "(F5)."));
    lookAtSets();
}

void frmIndexManager::showHelp()
{
    handled(m_program, [this] { OpenHelpTopic(m_program, u"Content"_s, helpTopicOf(this)); });
}

void frmIndexManager::showIndex(std::shared_ptr<const IdentifierIndex> index,
                                const QString &whyEmpty)
{
    m_index = std::move(index);
    m_identifiers->setIndex(m_index, whyEmpty);
    m_whoLinks->setIndex(m_index);
    m_sets->setIndex(m_index);
    m_repair->setIndex(m_index);
}

void frmIndexManager::lookAtSets()
{
    if (m_tabs->currentWidget() == m_sets)
        m_sets->lookOnce();
}

void frmIndexManager::bringToFront()
{
    setWindowState((windowState() & ~Qt::WindowMinimized) | Qt::WindowMaximized);
    raise();
    activateWindow();
    if (QWidget *const question = QApplication::activeModalWidget()) {
        question->raise();
        question->activateWindow();
    }
}

// A window must not go while its own work runs in front of it.
void frmIndexManager::closeAsAsked()
{
    QWidget *const inFront = QApplication::activeModalWidget();
    if (inFront == nullptr) {
        close();
        return;
    }
    inFront->close();
    QTimer::singleShot(50ms, this, &frmIndexManager::closeAsAsked);
}
