#include "controls/books/PageOutline.h"

#include "controls/books/BookCommands.h"
#include "controls/books/OutlineMenu.h"
#include "controls/books/OutlineTree.h"
#include "controls/books/PageActions.h"
#include "controls/books/PageCommands.h"
#include "controls/parts/Handler.h"
#include "controls/session/ProjectPages.h"
#include "platform/FileSystem.h"
#include "resources/Icons.h"
#include "startup/frmProgBar.h"

#include <QAction>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QShortcut>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {
bool isMissing(const QvError &error)
{
    return error.number() == FileNotFound || error.number() == PathNotFound;
}
} // namespace

PageOutline::PageOutline(ProjectSession &session, PageActions *pages, QWidget *parent)
    : QWidget(parent)
    , m_session(session)
    , m_pages(pages)
    , m_notice(new QWidget(this))
    , m_says(new QLabel(m_notice))
    , m_remedyButton(new QPushButton(m_notice))
    , txtFilter(new QLineEdit(this))
    , tvwPages(new OutlineTree(this))
    , m_rows(session, tvwPages)
    , m_menu(new OutlineMenu(session, tvwPages, pages))
    , cmdNew(addButton("cmdNewPage", tr("New pa&ge..."), "page-new"_L1))
    , cmdAdd(addButton("cmdAddSourceFiles", tr("&Add source files"), "add"_L1))
    , cmdImport(addButton("cmdAddImportFiles", tr("Add &import files"), "import"_L1))
{
    layOut();
    connectTree();
    connect(m_remedyButton, &QPushButton::clicked, this, &PageOutline::runRemedy);
    connect(txtFilter, &QLineEdit::textChanged, this,
            [this](const QString &text) { m_rows.filter(text); });
    connect(cmdNew, &QPushButton::clicked, m_menu->newPage(), &QAction::trigger);
    connect(m_menu, &OutlineMenu::listRequested, this, &PageOutline::askList);
    connect(&session.pages(), &ProjectPages::updated, this, [this] { m_rows.showProblems(); });
    showCurrent();
}

void PageOutline::connectTree()
{
    connect(tvwPages, &QTreeWidget::currentItemChanged, this,
            [this](const QTreeWidgetItem *item) { choose(item); });
    connect(tvwPages, &QTreeWidget::itemActivated, this,
            [this] { Q_EMIT m_session.openRequested(); });
    connect(tvwPages, &QTreeWidget::itemCollapsed, this,
            [this](const QTreeWidgetItem *item) { noteFolded(item, true); });
    connect(tvwPages, &QTreeWidget::itemExpanded, this,
            [this](const QTreeWidgetItem *item) { noteFolded(item, false); });
    connect(tvwPages, &OutlineTree::titleJudged, this,
            [this](const QString &problem) { say(problem, Remedy::None); });
    connect(tvwPages, &OutlineTree::titleEntered, this,
            [this](const QString &page, const QString &title) {
                if (const auto book = m_session.currentBook())
                    m_pages->rename(*book, page, title);
            });
    connect(tvwPages, &OutlineTree::nodesDropped, this, &PageOutline::drop, Qt::QueuedConnection);
    connect(tvwPages, &OutlineTree::filesDropped, this, [this](QStringList paths) {
        for (QString &path : paths)
            path = m_session.program().files.productPath(path);
        Q_EMIT filesDropped(paths);
    });
}

void PageOutline::layOut()
{
    m_says->setObjectName(u"lblBookProblem"_s);
    m_says->setTextFormat(Qt::PlainText);
    m_says->setWordWrap(true);
    m_remedyButton->setObjectName(u"cmdRemedy"_s);
    auto *notice = new QVBoxLayout(m_notice);
    notice->setContentsMargins({});
    notice->addWidget(m_says);
    notice->addWidget(m_remedyButton, 0, Qt::AlignLeft);

    txtFilter->setObjectName(u"txtPageFilter"_s);
    txtFilter->setAccessibleName(tr("Filter of the pages"));
    txtFilter->setPlaceholderText(tr("Filter"));
    txtFilter->setClearButtonEnabled(true);
    connect(new QShortcut(QKeySequence::Find, tvwPages, nullptr, nullptr, Qt::WidgetShortcut),
            &QShortcut::activated, txtFilter, qOverload<>(&QWidget::setFocus));

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(m_notice);
    layout->addWidget(txtFilter);
    layout->addWidget(tvwPages);
    layout->addWidget(buttons());
}

QWidget *PageOutline::buttons()
{
    const auto menuOf = [this](QPushButton *button, const char *folderName,
                               void (PageOutline::*folder)(), const char *filesName,
                               void (PageOutline::*files)()) {
        auto *menu = new QMenu(button);
        menu->addAction(icon("folder"_L1), tr("From a &folder..."), this, folder)
            ->setObjectName(QString::fromLatin1(folderName));
        menu->addAction(icon("page"_L1), tr("Single f&iles..."), this, files)
            ->setObjectName(QString::fromLatin1(filesName));
        button->setMenu(menu);
    };
    menuOf(cmdAdd, "mnuAddFolder", &PageOutline::addFolderRequested, "mnuAddFiles",
           &PageOutline::addFilesRequested);
    menuOf(cmdImport, "mnuImportFolder", &PageOutline::importFolderRequested, "mnuImportFiles",
           &PageOutline::importFilesRequested);
    cmdImport->menu()
        ->addAction(icon("refresh"_L1), tr("&Newer versions of what was added..."), this,
                    &PageOutline::importNewerRequested)
        ->setObjectName(u"mnuImportNewer"_s);
    auto *row = new QWidget(this);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins({});
    layout->addWidget(cmdNew);
    layout->addWidget(cmdAdd);
    layout->addWidget(cmdImport);
    layout->addStretch();
    return row;
}

QPushButton *PageOutline::addButton(const char *objectName, const QString &text,
                                    QLatin1StringView picture)
{
    auto *button = new QPushButton(icon(picture), text, this);
    button->setObjectName(QString::fromLatin1(objectName));
    return button;
}

QString PageOutline::key() const
{
    const auto &book = m_session.currentBook();
    return book ? m_session.projectName() + u'\n' + identityOf(*book) : QString();
}

void PageOutline::showCurrent()
{
    const QSignalBlocker quiet(tvwPages);
    QStringList chosen = tvwPages->chosen();
    if (std::exchange(m_shown, key()) != key())
        chosen.clear(); // another book has other pages of the same ids
    tvwPages->clear();
    tvwPages->setBook(m_session.folder(), m_session.currentBook().value_or(TocBook()));
    say({}, Remedy::None);
    for (QPushButton *const button : {cmdNew, cmdAdd, cmdImport})
        button->setEnabled(false);
    tvwPages->setEnabled(false);
    if (m_session.currentBook()) {
        const auto showTrouble = [this](const QvError &error) {
            say(error.description(), isMissing(error) ? Remedy::CreateFile : Remedy::None);
        };
        trap(showTrouble, [this] { readBook(); });
    }
    followSession();
    if (chosen.size() > 1)
        tvwPages->choose(chosen);
    m_menu->refresh();
}

void PageOutline::readBook()
{
    const TocBook &entry = *m_session.currentBook();
    const QList<BookPage> pages = m_session.book(entry).pages;
    for (QPushButton *const button : {cmdNew, cmdAdd, cmdImport})
        button->setEnabled(true);
    tvwPages->setEnabled(true);
    m_rows.fill(entry, m_folded.value(key()));
    m_rows.filter(txtFilter->text());
    if (!pages.isEmpty())
        return;
    if (const auto found = BookCommands(m_session).unlistedPages(entry).size(); found > 0)
        say(tr("The book lists no pages, but its folder holds %1.").arg(found), Remedy::ListPages);
}

void PageOutline::noteFolded(const QTreeWidgetItem *item, bool folded)
{
    QSet<QString> &pages = m_folded[key()];
    const QString page = item->data(OutlineTree::TitleColumn, OutlineTree::IdRole).toString();
    if (folded)
        pages.insert(page);
    else
        pages.remove(page);
}

void PageOutline::followSession()
{
    const QString page = m_session.currentPage();
    const QTreeWidgetItem *const now = tvwPages->currentItem();
    if (now != nullptr
        && now->data(OutlineTree::TitleColumn, OutlineTree::IdRole).toString() == page)
        return; // several may be chosen
    const QSignalBlocker quiet(tvwPages);
    QTreeWidgetItem *const item = page.isEmpty() ? nullptr : tvwPages->itemOf(page);
    tvwPages->setCurrentItem(item);
    if (item != nullptr)
        tvwPages->scrollToItem(item);
    else
        tvwPages->clearSelection();
    m_menu->refresh();
}

void PageOutline::lookAgain(const QStringList &paths)
{
    const auto &book = m_session.currentBook();
    const bool isOurs = book && std::any_of(paths.cbegin(), paths.cend(), [&](const QString &path) {
                            return path.startsWith(book->folder, Qt::CaseInsensitive);
                        });
    if (isOurs)
        showCurrent();
}

void PageOutline::editTitle()
{
    tvwPages->setFocus(Qt::ShortcutFocusReason);
    if (tvwPages->currentItem() != nullptr)
        tvwPages->editItem(tvwPages->currentItem());
}

void PageOutline::step(int by)
{
    QTreeWidgetItem *const now = tvwPages->currentItem();
    QTreeWidgetItem *const next = now == nullptr ? tvwPages->topLevelItem(0)
                                  : by < 0       ? tvwPages->itemAbove(now)
                                                 : tvwPages->itemBelow(now);
    if (next != nullptr)
        tvwPages->setCurrentItem(next);
}

void PageOutline::choose(const QTreeWidgetItem *item)
{
    if (item == nullptr || !m_session.currentBook())
        return;
    const TocBook book = *m_session.currentBook();
    // When the page that is open cannot be left, the outline goes back to it.
    if (!m_session.select(book,
                          item->data(OutlineTree::TitleColumn, OutlineTree::IdRole).toString()))
        QMetaObject::invokeMethod(this, &PageOutline::followSession, Qt::QueuedConnection);
}

void PageOutline::drop(const DraggedNodes &nodes, const OutlinePlace &place)
{
    const auto target = m_session.currentBook();
    if (!target)
        return;
    for (const TocBook &book : QList(m_session.books())) {
        QStringList pages;
        for (const DraggedNode &dragged : nodes.nodes) {
            if (dragged.node.book && identityOf(*dragged.node.book) == identityOf(book))
                pages.append(dragged.node.page);
        }
        if (!pages.isEmpty())
            m_pages->move(book, pages, *target, place);
    }
}

void PageOutline::say(const QString &text, Remedy remedy)
{
    m_remedy = remedy;
    m_says->setText(text.isEmpty() ? QString() : u"\u26A0 "_s + text);
    m_remedyButton->setText(remedy == Remedy::CreateFile
                                ? tr("&Create the book file")
                                : tr("&List the pages found in the folder"));
    m_remedyButton->setVisible(remedy != Remedy::None);
    m_notice->setVisible(!text.isEmpty());
}

void PageOutline::runRemedy()
{
    const TocBook book = *m_session.currentBook();
    handled(m_session.program(), [&] {
        if (m_remedy == Remedy::CreateFile)
            BookCommands(m_session).createMissingFile(book);
        else
            listPages(book, BookCommands(m_session).unlistedPages(book));
    });
    showCurrent();
}

void PageOutline::askList()
{
    handled(m_session.program(), [this] {
        const TocBook book = *m_session.currentBook();
        const QStringList files = BookCommands(m_session).unlistedPages(book);
        if (files.isEmpty()) {
            Q_EMIT m_session.done(tr("The book lists all pages of its folder."));
            return;
        }
        const QString some = files.first(qMin<qsizetype>(files.size(), 10)).join(u'\n');
        const QString rest = files.size() > 10 ? u"\n..."_s : QString();
        const int answer = m_session.program().messages.choose(
            {tr("The folder holds %1 pages that the book does not list:\n%2")
                 .arg(QString::number(files.size()), some + rest),
             {tr("List them"), tr("Cancel")}});
        if (answer == 0)
            listPages(book, files);
    });
}

void PageOutline::listPages(const TocBook &book, const QStringList &files)
{
    QStringList titles;
    const auto read = [&](const Progress &progress) {
        titles = BookCommands(m_session).titlesOf(book, files, progress);
    };
    runWithProgress(m_session.program(), this, tr("Reading the pages..."), read);
    if (PageCommands(m_session).list(book, files, titles))
        Q_EMIT m_pages->changed();
}
