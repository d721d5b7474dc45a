#pragma once

#include "controls/session/ProjectSession.h"
#include "startup/PageText.h"

/// A page of a book, or of the global pages: their book has the folder "_Global Information".
struct PageRef
{
    TocBook book;
    BookPage page;
};

/// The session's current page; nothing when none is current. Raises 53 when the book no longer has
/// it, and as ProjectSession::book.
std::optional<PageRef> currentPageOf(ProjectSession &session);

/// A page as it was read: its bytes, its text, and what speaks against editing it.
struct OpenPage
{
    QString project;
    PageRef ref;
    QString path;
    QString relative; ///< path from the project folder on
    FileStamp stamp;  ///< of the file just before it was read
    QByteArray bytes; ///< as on disk when it was read
    PageText content;
    bool gone = false;   ///< somebody removed the file, and the author's text shall replace it
    bool locked = false; ///< the file's read-only bit is set
    /// Why its text cannot be written back unharmed; "" when it can.
    QString uneditable;
};

/// Reads and writes pages of the open project, in the encoding each of them has.
class PageStore
{
public:
    explicit PageStore(ProjectSession &session);

    /// Raises 53 or 75 naming the file.
    OpenPage read(const PageRef &ref);
    /// The page lies elsewhere now; its text stays what it was.
    void follow(OpenPage &page, const PageRef &ref);
    /// Whether somebody else wrote the file since it was read; a file that has gone counts.
    bool changedOnDisk(const OpenPage &page);
    /// Takes what is on disk now as what was read: the author's own text shall replace it.
    void acceptDisk(OpenPage &page);
    /// The text of the bytes that were read or accepted last; "" when the file has gone.
    [[nodiscard]] QString textRead(const OpenPage &page) const;
    /// Why the text cannot be saved in the page's encoding: the first character that it lacks, or
    /// a declared charset under which the page would read differently. "" when it can.
    [[nodiscard]] QString reasonAgainstEncoding(const OpenPage &page, const QString &text) const;
    /// Writes `text` in the page's encoding and notes the new bytes. Raises 5 naming the first
    /// character that the encoding lacks, and as FileSystem::replaceFile.
    void write(OpenPage &page, const QString &text);
    /// The same in UTF-8; a charset that the page declares is changed to UTF-8, and a page that
    /// declares none gets a mark. Returns the text as written.
    QString writeAsUtf8(OpenPage &page, const QString &text);
    [[nodiscard]] bool isLocked(const OpenPage &page);
    /// Clears the read-only bit.
    void unlock(OpenPage &page);

private:
    void place(OpenPage &page, const PageRef &ref);
    void replace(OpenPage &page, const QByteArray &bytes);

    ProjectSession &m_session;
    Session &m_values;
    FileSystem &m_files;
};
