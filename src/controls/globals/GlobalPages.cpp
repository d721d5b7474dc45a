#include "controls/globals/GlobalPages.h"

#include "controls/globals/GlobalPageCommands.h"
#include "controls/globals/GlobalPageTypes.h"
#include "controls/pages/PagePane.h"
#include "controls/pages/PagePreview.h"
#include "controls/parts/Handler.h"
#include "controls/parts/ListCommands.h"
#include "controls/parts/Tables.h"
#include "platform/FileSystem.h"
#include "platform/Paths.h"
#include "resources/Icons.h"
#include "startup/Session.h"

#include <QAction>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QSplitter>
#include <QTabWidget>
#include <QTreeWidget>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int idRole = Qt::UserRole;

} // namespace

GlobalPages::GlobalPages(ProjectSession &session, QWidget *parent)
    : QWidget(parent)
    , m_session(session)
    , tvwGlobalPages(makeTable(u"tvwGlobalPages"_s, tr("Global pages"),
                               {tr("Page"), tr("Type"), tr("File"), tr("Problem")}, 0, this))
    , m_problem(makeProblemLabel(u"lblPagesProblem"_s, this))
    , tabPage(new QTabWidget(this))
    , m_pane(new PagePane(session, this))
    , m_preview(
          new PagePreview(session.program().files, session.program().session.projectLanguage, this))
    , m_commands(new ListCommands(tvwGlobalPages))
{
    layOut();
    connectParts();
    rebuild();
}

void GlobalPages::layOut()
{
    auto *both = new QSplitter(Qt::Vertical, this);
    both->setObjectName(u"splGlobalPages"_s);
    both->addWidget(list());
    both->addWidget(details());
    both->setStretchFactor(0, 2);
    both->setStretchFactor(1, 3);
    both->setChildrenCollapsible(false);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(both);
}

QWidget *GlobalPages::list()
{
    auto *side = new QWidget(this);
    auto *buttons = new QHBoxLayout;
    makeCommands(side, buttons);
    buttons->addStretch();
    auto *layout = new QVBoxLayout(side);
    layout->setContentsMargins({});
    layout->addWidget(m_problem);
    layout->addWidget(tvwGlobalPages, 1);
    layout->addLayout(buttons);
    return side;
}

void GlobalPages::makeCommands(QWidget *side, QHBoxLayout *buttons)
{
    QWidget *before = tvwGlobalPages; // in the order of tabs, too
    const auto command = [&](QPushButton *button, const QKeySequence &keys, auto run) {
        buttons->addWidget(button);
        setTabOrder(std::exchange(before, button), button);
        return m_commands->add(button, keys, [this, run] { handled(m_session.program(), run); });
    };
    command(makeButton(u"cmdNewGlobalPage"_s, "page-new"_L1, tr("New pa&ge..."), side),
            Qt::Key_Insert, [this] { askNew(); });
    command(makeButton(u"cmdAddGlobalFile"_s, "import"_L1, tr("Add file..."), side), {},
            [this] { askFile(); });
    m_change = command(makeButton(u"cmdChangeGlobalPage"_s, "edit"_L1, tr("T&itle..."), side),
                       Qt::Key_F2, [this] { askChange(); });
    m_renameFile =
        command(makeButton(u"cmdRenameGlobalFile"_s, "page-changed"_L1, tr("Rename file..."), side),
                Qt::SHIFT | Qt::Key_F2, [this] { askRenameFile(); });
    m_delete = command(makeButton(u"cmdDeleteGlobalPage"_s, "delete"_L1, tr("Delete..."), side),
                       QKeySequence::Delete, [this] { askDelete(); });
    m_up = command(makeIconButton(u"cmdGlobalPageUp"_s, "up"_L1, tr("Move up"), side),
                   Qt::ALT | Qt::Key_Up, [this] { move(-1); });
    m_down = command(makeIconButton(u"cmdGlobalPageDown"_s, "down"_L1, tr("Move down"), side),
                     Qt::ALT | Qt::Key_Down, [this] { move(1); });
}

QWidget *GlobalPages::details()
{
    tabPage->setObjectName(u"tabGlobalPage"_s);
    tabPage->setDocumentMode(true);
    tabPage->addTab(m_preview, tr("Preview"));
    tabPage->addTab(m_pane, tr("Source"));
    m_preview->setObjectName(u"globalPreview"_s);
    m_preview->setAccessibleName(tr("Preview of the global page"));
    m_pane->setObjectName(u"globalSource"_s);
    return tabPage;
}

void GlobalPages::connectParts()
{
    connect(&m_session, &ProjectSession::wasReset, this, &GlobalPages::rebuild);
    connect(&m_session, &ProjectSession::globalPagesChanged, this, &GlobalPages::rebuild);
    connect(&m_session, &ProjectSession::filesChanged, this, &GlobalPages::noticeChanges);
    connect(&m_session, &ProjectSession::filesChanged, this, &GlobalPages::showFiles);
    connect(tvwGlobalPages, &QTreeWidget::currentItemChanged, this, &GlobalPages::showChosen);
    connect(tvwGlobalPages, &QTreeWidget::itemActivated, this, [this] {
        tabPage->setCurrentWidget(m_pane);
        m_pane->setFocus();
    });
    connect(tabPage, &QTabWidget::currentChanged, this, &GlobalPages::showPreview);
    connect(m_pane, &PagePane::pageShown, this, &GlobalPages::showPreview);
    connect(m_pane, &PagePane::saved, this, [this](const QString &file) {
        if (const auto page = chosen())
            Q_EMIT changed(page->title, page->type);
        Q_EMIT m_session.done(tr("%1 was saved.").arg(file));
    });
    connect(
        new QShortcut(QKeySequence::Save, this, nullptr, nullptr, Qt::WidgetWithChildrenShortcut),
        &QShortcut::activated, m_pane, &PagePane::save);
}

bool GlobalPages::choose(const QString &title)
{
    return chooseRow(tvwGlobalPages, title);
}

void GlobalPages::showPlace(const QString &path, qsizetype start, qsizetype length)
{
    handled(m_session.program(), [&] {
        for (const GlobalPage &page : m_session.globalPages()) {
            const QString place = ProjectFile::globalFolder + u"\\"_s + page.file;
            if (place.compare(path, Qt::CaseInsensitive) != 0)
                continue;
            chooseId(page.id);
            tabPage->setCurrentWidget(m_pane);
            m_pane->showPlace(start, length);
            return;
        }
        throw QvError(FileNotFound, {}, tr("No global page has the file %1.").arg(path));
    });
}

bool GlobalPages::mayLeave()
{
    return m_pane->mayLeave();
}

void GlobalPages::noticeChanges()
{
    handled(m_session.program(), [this] { m_pane->noticeChanges(); });
}

void GlobalPages::rebuild()
{
    QString problem;
    {
        const QSignalBlocker quiet(tvwGlobalPages);
        tvwGlobalPages->clear();
        trap([&](const QvError &error) { problem = error.description(); },
             [this] {
                 if (m_session.projectName().isEmpty())
                     return;
                 for (const GlobalPage &page : m_session.globalPages())
                     addPage(page);
             });
        tvwGlobalPages->setCurrentItem(tvwGlobalPages->topLevelItem(rowOf(m_shown)));
    }
    sayProblem(m_problem, problem);
    showChosen();
}

void GlobalPages::addPage(const GlobalPage &page)
{
    const QString title = page.title.isEmpty() ? page.file : page.title;
    QTreeWidgetItem *row = addRow(
        tvwGlobalPages, {title, GlobalPageTypes::wordFor(page.type), page.file, QString()}, {});
    row->setData(0, idRole, page.id);
    showFile(row, page);
}

/// What is with the file of a page.
void GlobalPages::showFile(QTreeWidgetItem *row, const GlobalPage &page)
{
    const auto path = GlobalPageCommands(m_session).pathOf(page);
    const FileStatus file = path ? m_session.program().files.status(*path) : FileStatus();
    const QString problem = !path                         ? tr("outside the project")
                            : file.kind != FileKind::File ? tr("file missing")
                            : file.readOnly               ? tr("locked")
                                                          : QString();
    QStringList spoken{row->text(0), row->text(1), problem};
    spoken.removeAll(QString());
    row->setData(0, Qt::AccessibleTextRole, spoken.join(u", "_s));
    row->setText(3, problem);
    row->setToolTip(3, problem);
    row->setIcon(0, icon(file.kind != FileKind::File ? "page-missing"_L1
                         : file.readOnly             ? "lock"_L1
                                                     : "page"_L1));
    if (path)
        row->setToolTip(2, m_session.shownPath(*path));
}

// A list that cannot be read says so when it is built.
void GlobalPages::showFiles(const QStringList &changed)
{
    const bool concernsUs = std::ranges::any_of(changed, [](const QString &path) {
        return path.startsWith(ProjectFile::globalFolder, Qt::CaseInsensitive);
    });
    if (!concernsUs)
        return;
    trap([](const QvError &) {},
         [this] {
             for (const GlobalPage &page : m_session.globalPages()) {
                 if (const int row = rowOf(page.id); row >= 0)
                     showFile(tvwGlobalPages->topLevelItem(row), page);
             }
         });
}

void GlobalPages::offerCommands()
{
    const auto page = chosen();
    const QString none = page ? QString() : tr("Choose a page first.");
    for (QAction *command : {m_change, m_renameFile, m_delete})
        ListCommands::offer(command, none);
    const int row = page ? rowOf(page->id) : -1;
    ListCommands::offer(m_up, row == 0 ? tr("It is the first one.") : none);
    ListCommands::offer(m_down, row >= 0 && row == tvwGlobalPages->topLevelItemCount() - 1
                                    ? tr("It is the last one.")
                                    : none);
}

// Unsaved text is saved first; when that fails, its page stays the chosen one.
void GlobalPages::showChosen()
{
    const auto page = chosen();
    const QString id = page ? page->id : QString();
    if (id != m_shown && rowOf(m_shown) >= 0 && !m_pane->save()) {
        QMetaObject::invokeMethod(
            this, [this] { chooseId(m_shown); }, Qt::QueuedConnection);
        return;
    }
    m_shown = id;
    handled(m_session.program(), [&] {
        if (page)
            m_pane->showPage(PageRef{globalBook(),
                                     {.id = page->id,
                                      .title = page->title,
                                      .file = page->file,
                                      .keyWords = {},
                                      .pages = {}}});
        else
            m_pane->showPage(std::nullopt, tr("Choose a global page."));
    });
    showPreview();
    offerCommands();
}

void GlobalPages::showPreview()
{
    if (const OpenPage *page = m_pane->page())
        m_preview->showPage(m_pane->text(), m_session.folder(), page->relative);
    else
        m_preview->showNothing();
}

std::optional<GlobalPage> GlobalPages::chosen()
{
    QTreeWidgetItem *row = tvwGlobalPages->currentItem();
    if (row == nullptr)
        return {};
    const QList<GlobalPage> &pages = m_session.globalPages();
    const int at = tvwGlobalPages->indexOfTopLevelItem(row);
    return at < pages.size() ? std::optional(pages.at(at)) : std::nullopt;
}

int GlobalPages::rowOf(const QString &id) const
{
    for (int row = 0; row < tvwGlobalPages->topLevelItemCount(); ++row) {
        if (tvwGlobalPages->topLevelItem(row)->data(0, idRole).toString() == id)
            return row;
    }
    return -1;
}

void GlobalPages::chooseId(const QString &id)
{
    if (const int row = rowOf(id); row >= 0)
        tvwGlobalPages->setCurrentItem(tvwGlobalPages->topLevelItem(row));
}
