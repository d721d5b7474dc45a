#include "controls/books/PagePlaces.h"

#include "controls/session/ProjectSession.h"
#include "platform/Paths.h"
#include "platform/QvError.h"

#include <QCoreApplication>

PagePlace placeOfPage(ProjectSession &session, const QString &path)
{
    const QString base = session.folder();
    const QString wanted =
        path.startsWith(base, Qt::CaseInsensitive) ? path.sliced(base.size()) : path;
    for (const TocBook &book : QList(session.books())) {
        const auto folder = insideOf(base, book.folder + u'\\');
        if (!folder || !(base + wanted).startsWith(*folder, Qt::CaseInsensitive))
            continue;
        for (const BookPage &page : flattened(session.book(book).pages)) {
            if (pathOfPage(session, book, page).compare(wanted, Qt::CaseInsensitive) == 0)
                return {book, page};
        }
    }
    throw QvError(
        FileNotFound, {},
        QCoreApplication::translate("PagePlaces", "No book of this project lists the page:\n%1")
            .arg(session.shownPath(base + wanted)));
}

QString pathOfPage(ProjectSession &session, const TocBook &book, const BookPage &page)
{
    const QString base = session.folder();
    const auto folder = insideOf(base, book.folder);
    const auto path = folder ? insideOf(withBackslash(*folder), page.file) : std::nullopt;
    return path ? path->sliced(base.size()) : QString();
}

std::optional<BookPage> pageOfBook(ProjectSession &session, const TocBook &book, const QString &id)
{
    QList<BookPage> pages;
    trap([](const QvError &) {}, [&] { pages = flattened(session.book(book).pages); });
    for (const BookPage &page : std::as_const(pages)) {
        if (page.id == id)
            return page;
    }
    return {};
}
