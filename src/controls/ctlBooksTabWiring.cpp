#include "controls/books/AddFiles.h"
#include "controls/books/BookHeader.h"
#include "controls/books/BookList.h"
#include "controls/books/BookRequests.h"
#include "controls/books/DeleteBookDialog.h"
#include "controls/books/KeyWordsPane.h"
#include "controls/books/NewBookDialog.h"
#include "controls/books/PageActions.h"
#include "controls/books/PageDetails.h"
#include "controls/books/PageHistory.h"
#include "controls/books/PageOutline.h"
#include "controls/books/PagePlaces.h"
#include "controls/ctlBooksTab.h"
#include "controls/links/LinksPane.h"
#include "controls/pages/FindInPages.h"
#include "controls/pages/KeptTextsNotice.h"
#include "controls/pages/PagePane.h"
#include "controls/pages/PagePreview.h"
#include "controls/parts/Handler.h"

#include <QLineEdit>
#include <QShortcut>
#include <QTabWidget>

// How the parts of the books editor hang together.

using namespace Qt::StringLiterals;

void ctlBooksTab::connectSession()
{
    connect(&m_session, &ProjectSession::wasReset, this, &ctlBooksTab::showProject);
    connect(&m_session, &ProjectSession::booksChanged, this, &ctlBooksTab::showBooks);
    connect(&m_session, &ProjectSession::bookChanged, this, &ctlBooksTab::showBook);
    connect(&m_session, &ProjectSession::selectionChanged, this, &ctlBooksTab::followSelection);
    // Locks come and go without the book's file.
    connect(&m_session, &ProjectSession::filesChanged, m_outline, &PageOutline::lookAgain);
}

void ctlBooksTab::connectLists()
{
    const auto changed = [this] { Q_EMIT pagesChanged(true); };
    connect(m_books, &BookList::newRequested, this, &ctlBooksTab::askNewBook);
    connect(m_books, &BookList::deleteRequested, this, &ctlBooksTab::askDeleteBook);
    connect(m_books, &BookList::renameRequested, this, &ctlBooksTab::renameBook);
    connect(m_books, &BookList::changed, this, changed);
    connect(m_outline, &PageOutline::addFolderRequested, m_addFiles, &AddFiles::askSourceFolder);
    connect(m_outline, &PageOutline::addFilesRequested, m_addFiles, &AddFiles::askSourceFiles);
    connect(m_outline, &PageOutline::importFolderRequested, m_addFiles, &AddFiles::askImportFolder);
    connect(m_outline, &PageOutline::importFilesRequested, m_addFiles, &AddFiles::askImportFiles);
    connect(m_outline, &PageOutline::importNewerRequested, m_addFiles, &AddFiles::beginNewer);
    connect(m_outline, &PageOutline::filesDropped, m_addFiles, &AddFiles::begin);
}

void ctlBooksTab::connectEditors()
{
    const auto changed = [this] { Q_EMIT pagesChanged(true); };
    connect(m_header, &BookHeader::renamed, this, &ctlBooksTab::OnEditBookNameAcro);
    connect(m_header, &BookHeader::changed, this, changed);
    connect(m_keyWords, &KeyWordsPane::changed, this, changed);
    connect(m_pane, &PagePane::saved, this, changed);
    connect(m_pane, &PagePane::saved, &m_session,
            [this](const QString &file) { Q_EMIT m_session.done(tr("%1 was saved.").arg(file)); });
    connect(m_pane, &PagePane::pageShown, this, &ctlBooksTab::showPreview);
    connect(tabDetails, &QTabWidget::currentChanged, this, &ctlBooksTab::showPreview);
    connect(m_preview, &PagePreview::pageRequested, this, &ctlBooksTab::openPage);
    connect(m_preview, &PagePreview::rereadRequested, this, [this] {
        m_pane->noticeChanges();
        showPreview();
    });
    connect(m_preview, &PagePreview::addressShown, &m_session, &ProjectSession::done);
    connect(m_links, &LinksPane::placeRequested, this, &ctlBooksTab::showPlace);
    connect(m_links, &LinksPane::quickNavRequested, this, &ctlBooksTab::quickNavRequested);
}

// These are there from the beginning; the rest when it is first shown, or a book is chosen.
void ctlBooksTab::connectRequests()
{
    connect(&m_session, &ProjectSession::selectionChanged, this, [this] {
        if (m_session.currentBook())
            makeContent();
    });
    const auto changed = [this] { Q_EMIT pagesChanged(true); };
    connect(m_actions, &PageActions::changed, this, changed);
    connect(m_addFiles, &AddFiles::sourcesAdded, this, [this] { Q_EMIT OnAddSourceFiles(true); });
    connect(m_addFiles, &AddFiles::importsAdded, this, [this] { Q_EMIT OnAddImportFiles(true); });
    const auto *kept = new KeptTextsNotice(m_session, this);
    connect(kept, &KeptTextsNotice::pageRequested, this,
            [this](const QString &page) { showPlace(page, 0, 0); });
    connect(m_requests, &BookRequests::newBookRequested, this, &ctlBooksTab::askNewBook);
    connect(m_requests, &BookRequests::deleteBookRequested, this, &ctlBooksTab::askDeleteBook);
    connect(m_requests, &BookRequests::renameBookRequested, this, [this] {
        Q_EMIT m_session.openRequested();
        renameBook();
    });
    connect(m_requests, &BookRequests::renamePageRequested, this, [this] {
        Q_EMIT m_session.openRequested();
        makeContent();
        m_outline->editTitle();
    });
    connect(m_requests, &BookRequests::bookMoved, this, changed);
}

void ctlBooksTab::addKeys()
{
    const auto onKey = [this](const QKeySequence &keys, const auto &command) {
        connect(new QShortcut(keys, this, nullptr, nullptr, Qt::WidgetWithChildrenShortcut),
                &QShortcut::activated, this, command);
    };
    onKey(QKeySequence::Save, [this] { m_pane->save(); });
    onKey(Qt::CTRL | Qt::Key_PageUp, [this] { m_outline->step(-1); });
    onKey(Qt::CTRL | Qt::Key_PageDown, [this] { m_outline->step(1); });
    onKey(Qt::CTRL | Qt::Key_BracketLeft, [this] { m_history->back(); });
    onKey(Qt::CTRL | Qt::Key_BracketRight, [this] { m_history->forward(); });
}

void ctlBooksTab::askNewBook()
{
    auto *dialog = new NewBookDialog(m_session, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this, [this, dialog] {
        m_session.select(dialog->book());
        Q_EMIT m_session.done(tr("The book %1 was created.").arg(dialog->book().name));
        Q_EMIT pagesChanged(true);
    });
    dialog->open();
}

void ctlBooksTab::askDeleteBook(const TocBook &book)
{
    // Its open page is left first, so that nothing is written into a folder that goes.
    const bool isCurrent =
        m_session.currentBook() && identityOf(*m_session.currentBook()) == identityOf(book);
    if (isCurrent && !m_session.select(book))
        return;
    auto *dialog = new DeleteBookDialog(m_session, book, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this, [this, book] {
        Q_EMIT m_session.done(tr("The book %1 was deleted.").arg(book.name));
        Q_EMIT OnDeleteBook(true);
    });
    dialog->open();
}

void ctlBooksTab::renameBook()
{
    makeContent();
    tabDetails->setCurrentIndex(0);
    auto *name = m_header->findChild<QLineEdit *>(u"txtName"_s);
    name->setFocus(Qt::ShortcutFocusReason);
    name->selectAll();
}

// A link in the preview leads to a page of some book, or to a file that no book lists.
void ctlBooksTab::openPage(const QString &path, const QString &anchor)
{
    handled(m_program, [&] {
        const PagePlace place = placeOfPage(m_session, path);
        if (m_session.select(place.book, place.page.id) && !anchor.isEmpty())
            m_preview->scrollToAnchor(anchor);
    });
}

void ctlBooksTab::findInPages()
{
    if (m_find == nullptr) {
        m_find = new FindInPages(m_session, this);
        connect(m_find, &FindInPages::placeRequested, this, &ctlBooksTab::showPlace);
        connect(m_find, &FindInPages::replaced, this, [this] { Q_EMIT pagesChanged(true); });
    }
    m_find->open(hasContent() ? m_pane->selectedLine() : QString());
}
