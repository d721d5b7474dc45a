#pragma once

#include "projectfiles/BookFile.h"

#include <optional>

class ProjectSession;

/// A page where it is listed.
struct PagePlace
{
    TocBook book;
    BookPage page;
};

/// The page that a path means, without regard to case; the first place when several list it. `path`
/// is relative to the project folder, or full. Raises 53 when no book of the project lists it.
PagePlace placeOfPage(ProjectSession &session, const QString &path);

/// The path of a page relative to the project folder, which need not be there; "" when it would
/// leave the project.
QString pathOfPage(ProjectSession &session, const TocBook &book, const BookPage &page);

/// A page of a book as read last; nothing when it is not there or the book cannot be read.
std::optional<BookPage> pageOfBook(ProjectSession &session, const TocBook &book, const QString &id);
