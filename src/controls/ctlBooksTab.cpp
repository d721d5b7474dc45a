#include "controls/ctlBooksTab.h"

#include "controls/books/AddFiles.h"
#include "controls/books/BookHeader.h"
#include "controls/books/BookList.h"
#include "controls/books/BookRequests.h"
#include "controls/books/KeyWordsPane.h"
#include "controls/books/PageActions.h"
#include "controls/books/PageDetails.h"
#include "controls/books/PageHistory.h"
#include "controls/books/PageOutline.h"
#include "controls/books/PagePlaces.h"
#include "controls/links/LinksPane.h"
#include "controls/pages/PagePane.h"
#include "controls/pages/PagePreview.h"
#include "controls/parts/Handler.h"
#include "platform/Paths.h"
#include "startup/Session.h"

#include <QApplication>
#include <QEvent>
#include <QHBoxLayout>
#include <QMouseEvent>
#include <QScrollArea>
#include <QSplitter>
#include <QTabWidget>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
enum Tab { BookTab, PageTab, SourceTab, PreviewTab, LinksTab, KeyWordsTab };

/// A form that may be higher than the window.
QScrollArea *scrolled(QWidget *form)
{
    auto *area = new QScrollArea;
    area->setWidget(form);
    area->setWidgetResizable(true);
    area->setFrameShape(QFrame::NoFrame);
    area->setFocusPolicy(Qt::NoFocus);
    return area;
}
} // namespace

ctlBooksTab::ctlBooksTab(Program &program, ProjectSession &session, QWidget *parent)
    : LateWidget(parent)
    , m_program(program)
    , m_session(session)
    , m_actions(new PageActions(session, this))
    , m_addFiles(new AddFiles(session, this))
    , m_requests(new BookRequests(session, m_actions, m_addFiles, this))
    , m_history(new PageHistory(session, this))
{
    connectRequests();
}

ctlBooksTab::~ctlBooksTab() = default;

void ctlBooksTab::makeParts()
{
    m_books = new BookList(m_session, this);
    m_outline = new PageOutline(m_session, m_actions, this);
    m_header = new BookHeader(m_session, this);
    m_details = new PageDetails(m_session, m_actions, this);
    m_pane = new PagePane(m_session, this);
    m_preview = new PagePreview(m_program.files, m_program.session.projectLanguage, this);
    m_links = new LinksPane(m_session, this);
    m_keyWords = new KeyWordsPane(m_session, this);
    tabDetails = new QTabWidget(this);
}

void ctlBooksTab::layOut()
{
    makeParts();
    addDetails();
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
    both->setSizes({65 * letter, 100 * letter});
    both->setChildrenCollapsible(false);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(both);
    connectSession();
    connectLists();
    connectEditors();
    addKeys();
    followSelection();
}

void ctlBooksTab::addDetails()
{
    tabDetails->setObjectName(u"tabDetails"_s);
    tabDetails->setDocumentMode(true);
    tabDetails->insertTab(BookTab, scrolled(m_header), tr("Book"));
    tabDetails->insertTab(PageTab, scrolled(m_details), tr("Page"));
    tabDetails->insertTab(SourceTab, m_pane, tr("Source"));
    tabDetails->insertTab(PreviewTab, m_preview, tr("Preview"));
    tabDetails->insertTab(LinksTab, m_links, tr("Links"));
    tabDetails->insertTab(KeyWordsTab, m_keyWords, tr("Keywords"));
    m_preview->setObjectName(u"preview"_s);
    m_preview->setAccessibleName(tr("Preview of the page"));
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
    return !hasContent() || m_pane->mayLeave();
}

void ctlBooksTab::showPlace(const QString &path, qsizetype start, qsizetype length)
{
    if (path.startsWith(ProjectFile::globalFolder + u"\\"_s, Qt::CaseInsensitive)) {
        Q_EMIT globalPlaceRequested(path, start, length);
        return;
    }
    handled(m_program, [&] {
        const PagePlace place = placeOfPage(m_session, path);
        if (!m_session.select(place.book, place.page.id))
            return;
        Q_EMIT m_session.openRequested();
        makeContent();
        tabDetails->setCurrentIndex(SourceTab);
        m_pane->showPlace(start, length);
    });
}

void ctlBooksTab::showProject()
{
    m_shownBook.clear();
    m_books->rebuild();
    m_header->refresh();
    m_outline->showCurrent();
    m_details->refresh();
    m_keyWords->refresh();
    showPage();
    m_pane->noticeChanges();
}

void ctlBooksTab::showPage()
{
    const auto noPage = [this](const QvError &error) {
        m_pane->showPage(std::nullopt, error.description());
    };
    trap(noPage, [this] {
        m_pane->showPage(currentPageOf(m_session),
                         tr("Choose a page of a book to see its source."));
    });
}

void ctlBooksTab::showBooks()
{
    m_books->rebuild();
    m_header->refresh();
    // The current book may have got another name, acronym or folder.
    const auto &book = m_session.currentBook();
    const QString shown = book ? identityOf(*book) : QString();
    if (shown == m_shownBook)
        return;
    m_shownBook = shown;
    m_outline->showCurrent();
    m_details->refresh();
    m_keyWords->refresh();
}

void ctlBooksTab::showBook(const TocBook &book)
{
    const auto &current = m_session.currentBook();
    if (!current || identityOf(*current) != identityOf(book))
        return;
    m_outline->showCurrent();
    m_details->refresh();
    m_keyWords->refresh();
    showPage();
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
    m_details->refresh();
    m_keyWords->refresh();
    showPage();
    const bool hasPage = !m_session.currentPage().isEmpty();
    for (const Tab tab : {PageTab, SourceTab, PreviewTab, LinksTab, KeyWordsTab})
        tabDetails->setTabToolTip(tab,
                                  hasPage ? QString() : tr("Choose a page of the book first."));
    if (!hasPage)
        tabDetails->setCurrentIndex(BookTab);
    else if (tabDetails->currentIndex() == BookTab)
        tabDetails->setCurrentIndex(SourceTab);
}

void ctlBooksTab::showPreview()
{
    if (tabDetails->currentIndex() != PreviewTab)
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

// What no part of it wants comes here.
void ctlBooksTab::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::BackButton)
        m_history->back();
    else if (event->button() == Qt::ForwardButton)
        m_history->forward();
    else
        QWidget::mousePressEvent(event);
}

void ctlBooksTab::noticeChanges()
{
    if (QApplication::activeModalWidget() != nullptr)
        return; // the window becomes active again when that closes
    handled(m_program, [this] {
        m_session.noticeChanges();
        if (hasContent())
            m_pane->noticeChanges();
    });
}
