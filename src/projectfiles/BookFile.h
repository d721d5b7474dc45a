#pragma once

#include "platform/FileSystem.h"
#include "projectfiles/TableOfContents.h"
#include "startup/Session.h"

#include <QList>
#include <QString>
#include <QStringList>

/// A symbolic name under which programs ask for a page, and its number as text.
struct ContextId
{
    QString name, number;
    friend bool operator==(const ContextId &, const ContextId &) = default;
};

/// One page of a book's outline; pages below it follow in `pages`.
struct BookPage
{
    QString id; ///< "P0001"; stable, never used again
    QString title;
    QString file; ///< relative to the book folder, no anchor
    QStringList keyWords;
    QList<BookPage> pages;
    QList<ContextId> contextIds = {};
    QStringList linkIds = {}; ///< identifiers under which other books refer to it
};

/// What an entry of a book's list of sources means.
namespace SourceKind {
inline constexpr QLatin1StringView source{"Source"};     ///< a page taken as it was
inline constexpr QLatin1StringView import{"Import"};     ///< a page from a file that was imported
inline constexpr QLatin1StringView excluded{"Excluded"}; ///< a file the author left out; only path
} // namespace SourceKind

/// Where a page came from.
struct BookSource
{
    QString kind;      ///< one of SourceKind
    QString path;      ///< of a file in an archive: the archive's, a backslash, its name inside
    QString date, sum; ///< of the source when it was taken
    QString page;
    QString pageSum = {}; ///< of the page as it was made; "" when it had the source's very bytes
};

struct Book
{
    QString name, acronym, key, path, language, dateChanged;
    QList<BookPage> pages;
    QList<BookSource> sources;
};

/// The book file "<Book_Folder>\<Book_File>" of one book. Reading accepts a file without an
/// outline (Book_Pages); saving keeps elements that are not known here. The outline is at most 32
/// levels deep.
class BookFile
{
public:
    BookFile(Session &session, FileSystem &files);

    /// Raises 53 or 75 naming the file; 75 when the book's folder or file leaves the project.
    Book read(const QString &project, const TocBook &entry);
    /// Makes folder and file when missing, else rewrites what `book` holds. A page whose id is
    /// empty or stands twice gets a new one. The previous version goes to _Backup\.
    void write(const QString &project, const TocBook &entry, const Book &book);

    /// Full path of the book's folder (with backslash) and of one of its pages. Raises 75 when the
    /// stored value would leave the project.
    QString folder(const QString &project, const TocBook &entry) const;
    QString pagePath(const QString &project, const TocBook &entry, const QString &file) const;

private:
    QString bookPath(const QString &project, const TocBook &entry) const;

    Session &m_session;
    FileSystem &m_files;
};

/// All pages of an outline, parents before their children.
QList<BookPage> flattened(const QList<BookPage> &pages);
