#include "controls/books/BookRequests.h"

#include "controls/books/AddFiles.h"
#include "controls/books/BookCommands.h"
#include "controls/books/OutlineEdit.h"
#include "controls/books/PageActions.h"
#include "controls/parts/Handler.h"

#include <algorithm>

using Action = ProjectRequest::Action;

BookRequests::BookRequests(ProjectSession &session, PageActions *pages, AddFiles *files,
                           QObject *parent)
    : QObject(parent)
    , m_session(session)
    , m_pages(pages)
    , m_files(files)
{
    connect(&session, &ProjectSession::requested, this, &BookRequests::answer);
}

void BookRequests::answer(const ProjectRequest &request)
{
    const auto book = listed(request.node);
    if (request.node.kind == Node::Kind::Books && request.action == Action::New)
        Q_EMIT newBookRequested();
    else if (request.node.kind == Node::Kind::Book && book)
        answerForBook(request, *book);
    else if (request.node.kind == Node::Kind::Page && book)
        answerForPages(request, *book);
}

std::optional<TocBook> BookRequests::listed(const Node &node) const
{
    for (const TocBook &book : m_session.books()) {
        if (node.book && identityOf(book) == identityOf(*node.book))
            return book;
    }
    return {};
}

void BookRequests::answerForBook(const ProjectRequest &request, const TocBook &book)
{
    const auto row = m_session.books().indexOf(book);
    switch (request.action) {
    case Action::New:
        m_pages->askNew(book, {});
        break;
    case Action::Rename:
        if (m_session.select(book))
            Q_EMIT renameBookRequested();
        break;
    case Action::Delete:
        Q_EMIT deleteBookRequested(book);
        break;
    case Action::MoveUp:
        moveBook(book, row - 1);
        break;
    case Action::MoveDown:
        moveBook(book, row + 1);
        break;
    case Action::MoveTo: // places are counted before the book leaves its own
        moveBook(book, request.place < 0     ? m_session.books().size() - 1
                       : request.place > row ? request.place - 1
                                             : request.place);
        break;
    case Action::AddFiles:
        if (m_session.select(book))
            m_files->begin(request.files);
        break;
    default:
        break;
    }
}

void BookRequests::moveBook(const TocBook &book, qsizetype to)
{
    if (to < 0 || to >= m_session.books().size() || to == m_session.books().indexOf(book))
        return;
    const bool isDone = handled(m_session.program(), [&] {
        return BookCommands(m_session).move(book, static_cast<int>(to));
    });
    if (isDone)
        Q_EMIT bookMoved();
}

QStringList BookRequests::pagesOf(const ProjectRequest &request, const TocBook &book) const
{
    QStringList pages;
    for (const Node &node : QList{request.node} + request.others) {
        const auto from = listed(node);
        if (from && identityOf(*from) == identityOf(book))
            pages.append(node.page);
    }
    return pages;
}

void BookRequests::answerForPages(const ProjectRequest &request, const TocBook &book)
{
    const QStringList pages = pagesOf(request, book);
    switch (request.action) {
    case Action::New:
        m_pages->askNew(book, {OutlinePlace::Where::After, request.node.page});
        break;
    case Action::Rename:
        if (m_session.select(book, request.node.page))
            Q_EMIT renamePageRequested();
        break;
    case Action::RenameFile:
        m_pages->askRenameFile(book, request.node.page);
        break;
    case Action::Delete:
        m_pages->askDelete(book, pages);
        break;
    case Action::MoveUp:
        m_pages->moveUp(book, pages);
        break;
    case Action::MoveDown:
        m_pages->moveDown(book, pages);
        break;
    case Action::Promote:
        m_pages->promote(book, pages);
        break;
    case Action::Demote:
        m_pages->demote(book, pages);
        break;
    case Action::MoveTo:
        movePages(request, book);
        break;
    case Action::Unlock:
        m_pages->setLocked(book, pages, false);
        break;
    default:
        break;
    }
}

// The place is a row below the target; what is moved away from there does not count as a neighbour.
void BookRequests::movePages(const ProjectRequest &request, const TocBook &from)
{
    const auto target = request.target ? listed(*request.target) : std::nullopt;
    if (!target)
        return;
    handled(m_session.program(), [&] {
        const QStringList pages = pagesOf(request, from);
        QList<BookPage> outline = m_session.book(*target).pages;
        const BookPage *const parent = OutlineEdit::find(outline, request.target->page);
        const QList<BookPage> below = parent == nullptr ? outline : parent->pages;
        OutlinePlace place{OutlinePlace::Where::Below, request.target->page};
        const bool isSameBook = identityOf(from) == identityOf(*target);
        for (qsizetype row = request.place; row >= 0 && row < below.size(); ++row) {
            if (!isSameBook || !pages.contains(below.at(row).id)) {
                place = {OutlinePlace::Where::Before, below.at(row).id};
                break;
            }
        }
        m_pages->move(from, pages, *target, place);
    });
}
