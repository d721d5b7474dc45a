#include "controls/books/PageOutline.h"

#include "controls/books/BookCommands.h"
#include "controls/parts/Handler.h"
#include "platform/FileSystem.h"
#include "platform/Paths.h"
#include "platform/TreeWalker.h"
#include "resources/Icons.h"
#include "startup/Session.h"
#include "startup/frmProgBar.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {
enum Column { TitleColumn, FileColumn, ProblemColumn };
constexpr int idRole = Qt::UserRole;

QString comparable(const QString &file)
{
    return QString(file).replace(u'/', u'\\').toCaseFolded();
}

bool isMissing(const QvError &error)
{
    return error.number() == FileNotFound || error.number() == PathNotFound;
}
} // namespace

PageOutline::PageOutline(ProjectSession &session, QWidget *parent)
    : QWidget(parent)
    , m_session(session)
    , m_notice(new QWidget(this))
    , m_says(new QLabel(m_notice))
    , m_remedyButton(new QPushButton(m_notice))
    , tvwPages(new QTreeWidget(this))
    , cmdAdd(new QPushButton(icon("add"_L1), tr("&Add source files"), this))
{
    layOut();
    connect(m_remedyButton, &QPushButton::clicked, this, &PageOutline::runRemedy);
    connect(tvwPages, &QTreeWidget::currentItemChanged, this,
            [this](const QTreeWidgetItem *item) { choose(item); });
    connect(tvwPages, &QTreeWidget::itemActivated, this,
            [this] { Q_EMIT m_session.openRequested(); });
    showCurrent();
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

    tvwPages->setObjectName(u"tvwPages"_s);
    tvwPages->setAccessibleName(tr("Pages of the book"));
    tvwPages->setHeaderLabels({tr("Page"), tr("File"), tr("Problem")});
    tvwPages->setUniformRowHeights(true);
    const int letter = fontMetrics().averageCharWidth();
    tvwPages->header()->resizeSection(TitleColumn, 30 * letter);
    tvwPages->header()->resizeSection(FileColumn, 17 * letter);

    auto *sources = new QMenu(cmdAdd);
    QAction *folder = sources->addAction(icon("folder"_L1), tr("From a &folder..."), this,
                                         &PageOutline::addFolderRequested);
    folder->setObjectName(u"mnuAddFolder"_s);
    QAction *files = sources->addAction(icon("page"_L1), tr("Single f&iles..."), this,
                                        &PageOutline::addFilesRequested);
    files->setObjectName(u"mnuAddFiles"_s);
    cmdAdd->setObjectName(u"cmdAddSourceFiles"_s);
    cmdAdd->setMenu(sources);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(m_notice);
    layout->addWidget(tvwPages);
    layout->addWidget(cmdAdd, 0, Qt::AlignLeft);
}

void PageOutline::showCurrent()
{
    const QSignalBlocker quiet(tvwPages);
    tvwPages->clear();
    say({}, Remedy::None);
    cmdAdd->setEnabled(false);
    if (!m_session.currentBook())
        return;
    const auto showProblem = [this](const QvError &error) {
        say(error.description(), isMissing(error) ? Remedy::CreateFile : Remedy::None);
    };
    trap(showProblem, [this] { readBook(); });
    followSession();
}

void PageOutline::readBook()
{
    const TocBook &entry = *m_session.currentBook();
    const QList<BookPage> pages = m_session.book(entry).pages;
    cmdAdd->setEnabled(true);
    addItems(tvwPages->invisibleRootItem(), pages, filesInFolder());
    tvwPages->expandAll();
    if (!pages.isEmpty())
        return;
    if (const auto found = BookCommands(m_session).unlistedPages(entry).size(); found > 0)
        say(tr("The book lists no pages, but its folder holds %n.", nullptr,
               static_cast<int>(found)),
            Remedy::ListPages);
}

// One walk over the folder instead of a look for each page.
QSet<QString> PageOutline::filesInFolder() const
{
    FileSystem &files = m_session.program().files;
    const QString folder = BookFile(m_session.program().session, files)
                               .folder(m_session.projectName(), *m_session.currentBook());
    QSet<QString> found;
    walkTree(files, withoutBackslash(folder), [&](const TreeEntry &entry) {
        if (entry.status.kind == FileKind::File)
            found.insert(comparable(entry.relative));
    });
    return found;
}

void PageOutline::addItems(QTreeWidgetItem *parent, const QList<BookPage> &pages,
                           const QSet<QString> &files)
{
    const QIcon there = icon("page"_L1);
    const QIcon gone = icon("page-missing"_L1);
    for (const BookPage &page : pages) {
        const bool isThere = files.contains(comparable(page.file));
        const QString title = page.title.isEmpty() ? page.file : page.title;
        auto *item = new QTreeWidgetItem(
            parent, {title, page.file, isThere ? QString() : tr("file missing")});
        item->setIcon(TitleColumn, isThere ? there : gone);
        item->setData(TitleColumn, idRole, page.id);
        addItems(item, page.pages, files);
    }
}

void PageOutline::followSession()
{
    const QSignalBlocker quiet(tvwPages);
    QTreeWidgetItem *current = nullptr;
    if (const QString &id = m_session.currentPage(); !id.isEmpty()) {
        for (QTreeWidgetItemIterator at(tvwPages); *at != nullptr && current == nullptr; ++at) {
            if ((*at)->data(TitleColumn, idRole).toString() == id)
                current = *at;
        }
    }
    tvwPages->setCurrentItem(current);
    if (current != nullptr)
        tvwPages->scrollToItem(current);
}

void PageOutline::choose(const QTreeWidgetItem *item)
{
    if (item == nullptr || !m_session.currentBook())
        return;
    const TocBook book = *m_session.currentBook();
    // When the page that is open cannot be left, the outline goes back to it.
    if (!m_session.select(book, item->data(TitleColumn, idRole).toString()))
        QMetaObject::invokeMethod(this, &PageOutline::followSession, Qt::QueuedConnection);
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
        BookCommands commands(m_session);
        if (m_remedy == Remedy::CreateFile)
            commands.createMissingFile(book);
        else
            listPages(commands, book);
    });
}

void PageOutline::listPages(BookCommands &commands, const TocBook &book)
{
    const QStringList files = commands.unlistedPages(book);
    QStringList titles;
    const auto read = [&](const Progress &progress) {
        titles = commands.titlesOf(book, files, progress);
    };
    runWithProgress(m_session.program(), this, tr("Reading the pages..."), read);
    commands.listPages(book, files, titles);
}
