#include "controls/ctlBooksTab.h"

#include "controls/import/AddSourceFiles.h"
#include "controls/books/BookHeader.h"
#include "controls/books/BookList.h"
#include "controls/books/DeleteBookDialog.h"
#include "controls/parts/Handler.h"
#include "controls/books/NewBookDialog.h"
#include "controls/books/PageOutline.h"
#include "controls/pages/PagePane.h"
#include "controls/pages/PagePreview.h"
#include "platform/FileSystem.h"
#include "platform/Paths.h"
#include "startup/Session.h"

#include <QApplication>
#include <QEvent>
#include <QHBoxLayout>
#include <QShortcut>
#include <QSplitter>
#include <QTabWidget>

#include <algorithm>

using namespace Qt::StringLiterals;

ctlBooksTab::ctlBooksTab(Program &program, ProjectSession &session, QWidget *parent)
    : QWidget(parent)
    , m_program(program)
    , m_session(session)
    , m_books(new BookList(session, this))
    , m_outline(new PageOutline(session, this))
    , m_header(new BookHeader(session, this))
    , m_pane(new PagePane(session, this))
    , m_preview(new PagePreview(program.files, program.session.projectLanguage, this))
    , m_addSourceFiles(new AddSourceFiles(session, this))
    , tabDetails(new QTabWidget(this))
{
    layOut();
    connectSession();
    connectParts();
    m_session.setLeaveGuard([this] { return m_pane->save(); });
}

ctlBooksTab::~ctlBooksTab()
{
    m_session.setLeaveGuard({});
}

void ctlBooksTab::layOut()
{
    tabDetails->setObjectName(u"tabDetails"_s);
    tabDetails->setDocumentMode(true);
    tabDetails->addTab(m_header, tr("Book"));
    tabDetails->addTab(m_pane, tr("Source"));
    tabDetails->addTab(m_preview, tr("Preview"));
    m_preview->setObjectName(u"preview"_s);
    m_preview->setAccessibleName(tr("Preview of the page"));

    auto *left = new QSplitter(Qt::Vertical, this);
    left->setObjectName(u"splBooks"_s);
    left->addWidget(m_books);
    left->addWidget(m_outline);
    left->setStretchFactor(0, 2);
    left->setStretchFactor(1, 3);
    left->setSizes({200, 400});
    left->setChildrenCollapsible(false);
    auto *both = new QSplitter(this);
    both->setObjectName(u"splDetails"_s);
    both->addWidget(left);
    both->addWidget(tabDetails);
    both->setStretchFactor(0, 2);
    both->setStretchFactor(1, 5);
    const int letter = fontMetrics().averageCharWidth();
    both->setSizes({55 * letter, 100 * letter});
    both->setChildrenCollapsible(false);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(both);
}

void ctlBooksTab::connectSession()
{
    connect(&m_session, &ProjectSession::wasReset, this, &ctlBooksTab::showProject);
    connect(&m_session, &ProjectSession::booksChanged, this, &ctlBooksTab::showBooks);
    connect(&m_session, &ProjectSession::bookChanged, this, &ctlBooksTab::showBook);
    connect(&m_session, &ProjectSession::selectionChanged, this, &ctlBooksTab::followSelection);
    connect(&m_session, &ProjectSession::deleteRequested, this, &ctlBooksTab::askDeleteBook);
}

void ctlBooksTab::connectParts()
{
    connect(m_books, &BookList::newRequested, this, &ctlBooksTab::askNewBook);
    connect(m_books, &BookList::deleteRequested, this, &ctlBooksTab::askDeleteBook);
    connect(m_header, &BookHeader::renamed, this, &ctlBooksTab::OnEditBookNameAcro);
    connect(m_pane, &PagePane::saved, &m_session,
            [this](const QString &file) { Q_EMIT m_session.done(tr("%1 was saved.").arg(file)); });
    connect(m_outline, &PageOutline::addFolderRequested, this, [this] {
        const QString folder = m_program.fileDialogs.chooseFolder(tr("Add source files"), {});
        if (!folder.isEmpty())
            m_addSourceFiles->begin({folder});
    });
    connect(m_outline, &PageOutline::addFilesRequested, this, [this] {
        const QStringList files = m_program.fileDialogs.openFiles(
            tr("Add source files"), {}, u"HTML files(*.htm;*.html)|*.htm;*.html"_s);
        if (!files.isEmpty())
            m_addSourceFiles->begin(files);
    });
    connect(m_addSourceFiles, &AddSourceFiles::added, this,
            [this] { Q_EMIT OnAddSourceFiles(true); });
    connect(m_pane, &PagePane::pageShown, this, &ctlBooksTab::showPreview);
    connect(tabDetails, &QTabWidget::currentChanged, this, &ctlBooksTab::showPreview);
    connect(m_preview, &PagePreview::pageRequested, this, &ctlBooksTab::openPage);
    connect(
        new QShortcut(QKeySequence::Save, this, nullptr, nullptr, Qt::WidgetWithChildrenShortcut),
        &QShortcut::activated, m_pane, &PagePane::save);
}

QString ctlBooksTab::ProjectName() const
{
    return m_session.projectName();
}

void ctlBooksTab::setProjectName(const QString &name)
{
    m_session.open(name);
}

void ctlBooksTab::setBookName(const QString &name)
{
    if (m_session.currentBook() && m_session.currentBook()->name == name)
        return;
    const QList<TocBook> &books = m_session.books();
    const auto found = std::find_if(books.cbegin(), books.cend(),
                                    [&](const TocBook &book) { return book.name == name; });
    m_session.select(found == books.cend() ? std::nullopt : std::optional(*found));
}

bool ctlBooksTab::mayLeave()
{
    return m_pane->mayLeave();
}

void ctlBooksTab::showProject()
{
    m_shownBook.clear();
    m_books->rebuild();
    m_header->refresh();
    m_outline->showCurrent();
    // A refresh leaves text that is being edited; another project has no current page.
    if (m_pane->page() != nullptr && !m_session.currentPage().isEmpty())
        noticeChanges();
    else
        m_pane->showCurrent();
}

void ctlBooksTab::showBooks()
{
    m_books->rebuild();
    m_header->refresh();
}

void ctlBooksTab::showBook(const TocBook &book)
{
    if (m_session.currentBook() == book)
        m_outline->showCurrent();
}

void ctlBooksTab::followSelection()
{
    const auto &book = m_session.currentBook();
    const QString shown = book ? identityOf(*book) : QString();
    m_books->followSession();
    if (shown != m_shownBook) {
        m_shownBook = shown;
        m_header->showCurrent();
        m_outline->showCurrent();
    } else {
        m_outline->followSession();
    }
    m_pane->showCurrent();
    const bool hasPage = !m_session.currentPage().isEmpty();
    if (!hasPage)
        tabDetails->setCurrentWidget(m_header);
    else if (tabDetails->currentWidget() == m_header)
        tabDetails->setCurrentWidget(m_pane);
}

void ctlBooksTab::showPreview()
{
    if (tabDetails->currentWidget() != m_preview)
        return;
    const OpenPage *page = m_pane->page();
    if (page == nullptr) {
        m_preview->showNothing();
        return;
    }
    const QString folder = m_session.folder();
    m_preview->showPage(m_pane->text(), folder, page->path.sliced(folder.size()));
}

bool ctlBooksTab::event(QEvent *event)
{
    // Back from another program: somebody may have changed the files meanwhile.
    if (event->type() == QEvent::WindowActivate)
        QMetaObject::invokeMethod(this, &ctlBooksTab::noticeChanges, Qt::QueuedConnection);
    return QWidget::event(event);
}

void ctlBooksTab::noticeChanges()
{
    if (QApplication::activeModalWidget() != nullptr)
        return; // the window becomes active again when that closes
    handled(m_program, [this] {
        m_session.noticeChanges();
        m_pane->noticeChanges();
    });
}

void ctlBooksTab::askNewBook()
{
    auto *dialog = new NewBookDialog(m_session, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this, [this, dialog] {
        m_session.select(dialog->book());
        Q_EMIT m_session.done(tr("The book %1 was created.").arg(dialog->book().name));
    });
    dialog->open();
}

void ctlBooksTab::askDeleteBook(const TocBook &book)
{
    // Its open page is left first, so that nothing is written into a folder that goes.
    const bool isCurrent = m_session.currentBook() == book;
    if (isCurrent && !m_session.select(book))
        return;
    auto *dialog = new DeleteBookDialog(m_session, book, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this, [this] { Q_EMIT OnDeleteBook(true); });
    dialog->open();
}

// A link in the preview leads to a page of some book, or to a file that no book lists.
void ctlBooksTab::openPage(const QString &path)
{
    handled(m_program, [&] {
        const BookFile file(m_program.session, m_program.files);
        for (const TocBook &book : QList(m_session.books())) {
            const auto folder = insideOf(m_session.folder(), book.folder + u'\\');
            if (!folder || !path.startsWith(*folder, Qt::CaseInsensitive))
                continue;
            for (const BookPage &page : flattened(m_session.book(book).pages)) {
                const QString found = file.pagePath(m_session.projectName(), book, page.file);
                if (found.compare(path, Qt::CaseInsensitive) == 0) {
                    m_session.select(book, page.id);
                    return;
                }
            }
        }
        throw QvError(
            FileNotFound, {},
            tr("No book of this project lists the page:\n%1").arg(m_session.shownPath(path)));
    });
}
