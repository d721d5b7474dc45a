#include "controls/quicknav/LinkTargets.h"

#include "controls/books/PagePlaces.h"
#include "controls/session/ProjectPages.h"
#include "platform/QvError.h"

#include <QCoreApplication>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("LinkTarget", text);
}

QList<ListedPage> pagesOf(ProjectSession &session, const TocBook &book)
{
    QList<ListedPage> pages;
    for (const BookPage &page : flattened(session.book(book).pages))
        pages.append({book, page.id, page.title.isEmpty() ? page.file : page.title,
                      pathOfPage(session, book, page)});
    return pages;
}

} // namespace

QList<ListedPage> listedPages(ProjectSession &session)
{
    QList<ListedPage> pages;
    for (const TocBook &book : session.books())
        trap([](const QvError &) {}, [&] { pages.append(pagesOf(session, book)); });
    return pages;
}

QString LinkTarget::word() const
{
    switch (state) {
    case State::Good:
        return tr("good");
    case State::NoBook:
        return tr("no such book");
    case State::UnreadableBook:
        return tr("book cannot be read");
    case State::NoPage:
        return tr("no such page");
    case State::NoFile:
        return tr("file missing");
    case State::NoAnchor:
        return tr("no such place in the page");
    }
    return {};
}

LinkTargets::LinkTargets(ProjectSession &session)
    : m_session(session)
{
}

void LinkTargets::forget()
{
    m_books.clear();
    m_files.clear();
}

const TocBook *LinkTargets::bookOf(const QuickNavLink &link) const
{
    const QList<TocBook> &books = m_session.books();
    const auto found = std::find_if(books.cbegin(), books.cend(), [&](const TocBook &book) {
        return book.acronym.compare(link.book, Qt::CaseInsensitive) == 0;
    });
    return found == books.cend() ? nullptr : &*found;
}

const LinkTargets::Known &LinkTargets::known(const QString &acronym)
{
    const QString key = acronym.toCaseFolded();
    if (const auto found = m_books.constFind(key); found != m_books.constEnd())
        return *found;
    Known made{acronym, LinkTarget::State::NoBook, {}};
    if (const TocBook *book = bookOf({acronym, {}, {}, {}})) {
        made.name = book->name;
        made.state = LinkTarget::State::UnreadableBook;
        trap([](const QvError &) {},
             [&] {
                 for (const ListedPage &page : pagesOf(m_session, *book))
                     made.pages.insert(page.id, page);
                 made.state = LinkTarget::State::Good;
             });
    }
    return *m_books.insert(key, made);
}

LinkTarget LinkTargets::of(const QuickNavLink &link)
{
    const Known &book = known(link.book);
    LinkTarget target{book.state, book.name, link.page, {}};
    if (target.isDead())
        return target;
    const auto page = book.pages.constFind(link.page);
    if (page == book.pages.constEnd()) {
        target.state = LinkTarget::State::NoPage;
        return target;
    }
    target.page = page->title;
    target.path = page->path;
    if (!isThere(page->path))
        target.state = LinkTarget::State::NoFile;
    else if (!hasAnchor(page->path, link.anchor))
        target.state = LinkTarget::State::NoAnchor;
    return target;
}

bool LinkTargets::isThere(const QString &path)
{
    if (path.isEmpty())
        return false;
    if (m_session.pages().latest().page(path) != nullptr)
        return true;
    const QString key = path.toCaseFolded();
    if (const auto found = m_files.constFind(key); found != m_files.constEnd())
        return *found;
    bool there = false;
    // What cannot even be looked for leads nowhere.
    trap([](const QvError &) {},
         [&] { there = m_session.program().files.fileExists(m_session.folder() + path); });
    m_files.insert(key, there);
    return there;
}

bool LinkTargets::hasAnchor(const QString &path, const QString &anchor) const
{
    const IndexedPage *page = m_session.pages().latest().page(path);
    return anchor.isEmpty() || page == nullptr || !page->problem.isEmpty()
           || page->anchors.contains(anchor);
}
