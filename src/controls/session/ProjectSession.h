#pragma once

#include "projectfiles/BookFile.h"
#include "projectfiles/GlobalBook.h"
#include "projectfiles/QuickNavFile.h"
#include "projectfiles/TableOfContents.h"
#include "startup/Program.h"

#include <QHash>
#include <QObject>

#include <functional>
#include <optional>

/// The one open project that the hosted controls share: its parsed table of contents, the books
/// read so far (each on first need), globals, quick navigation, and the current selection.
/// Controls talk to each other only through its signals.
class ProjectSession final : public QObject
{
    Q_OBJECT

public:
    explicit ProjectSession(Program &program, QObject *parent = nullptr);

    /// Opens a project, or does nothing when it is open already. "" closes. Raises 53, 75 or 76
    /// naming the file when the project cannot be read; nothing is open then.
    void open(const QString &project);
    /// Reads the project's files again. Raises as `open`, and keeps what it had then.
    void reread();
    /// Reads again only what changed on disk since it was read here. Raises as `open`, but not
    /// twice in a row for the same reason.
    void noticeChanges();

    [[nodiscard]] Program &program() const { return m_program; }
    [[nodiscard]] const QString &projectName() const { return m_project; }
    [[nodiscard]] QString folder() const; ///< of the project, with backslash; "" when none is open
    /// A path in the machine's form, for tool tips and messages; as it is where it has no such
    /// form.
    [[nodiscard]] QString shownPath(const QString &path) const;
    [[nodiscard]] const TocHeader &header() const { return m_toc.header; }
    [[nodiscard]] const QList<TocBook> &books() const { return m_toc.books; }

    /// A book's own file, read on first need. Raises 53 or 75 naming the file.
    const Book &book(const TocBook &entry);
    /// The global pages and the quick navigation, read on first need. Raise 75 naming the file.
    const QList<GlobalPage> &globalPages();
    const QuickNav &quickNav();

    /// What was read of a book, the global pages or the quick navigation is out of date: it is
    /// read again on the next need.
    void forgetBook(const TocBook &entry);
    void forgetQuickNav();
    /// Reads the table of contents again, after a change of ours.
    void rereadBooks();
    /// The same after a change of name, acronym or categories; the selection stays on the book.
    void bookWasRenamed(const TocBook &old, const TocBook &now);
    /// Whether the book file changed on disk since it was read here.
    [[nodiscard]] bool changedOnDisk(const TocBook &entry) const;

    [[nodiscard]] const std::optional<TocBook> &currentBook() const { return m_book; }
    [[nodiscard]] const QString &currentPage() const { return m_page; } ///< id in the book, or ""
    /// Makes a book, or a page of it, the current one; nothing means none. False, and nothing
    /// changed, when the page that is open now cannot be left.
    bool select(const std::optional<TocBook> &book, const QString &page = {});
    /// Asked before the selection changes; false keeps it.
    void setLeaveGuard(std::function<bool()> guard) { m_mayLeave = std::move(guard); }

Q_SIGNALS:
    /// Another project, or everything was read again.
    void wasReset();
    /// The list of books changed.
    void booksChanged();
    /// The file of one book changed.
    void bookChanged(const TocBook &entry);
    void quickNavChanged();
    void selectionChanged();
    /// The author wants to work on the current book or page: bring its editor to the front.
    void openRequested();
    /// What was just done, in words for the status bar.
    void done(const QString &what);
    /// The author wants to delete a book; the editor of books asks and does it.
    void deleteRequested(const TocBook &entry);

private:
    struct Stamp
    {
        FileKind kind = FileKind::Missing;
        qint64 size = 0;
        QDateTime modified;
        friend bool operator==(const Stamp &, const Stamp &) = default;
    };
    struct ReadBook
    {
        Book book;
        Stamp stamp;
    };

    [[nodiscard]] Stamp stampOf(const QString &path) const;
    [[nodiscard]] QString bookPath(const TocBook &entry) const;
    [[nodiscard]] std::optional<TocBook> listed(const TocBook &book) const;
    void close();
    void readProject(const QString &project);
    void readToc();
    void forgetContents();
    void followSelection();
    void rereadChanges();
    void noticeBooks();

    Program &m_program;
    QString m_project;
    Toc m_toc;
    Stamp m_tocStamp, m_globalsStamp, m_quickNavStamp;
    QString m_noticedProblem;
    QHash<QString, ReadBook> m_read;
    std::optional<QList<GlobalPage>> m_globals;
    std::optional<QuickNav> m_quickNav;
    std::optional<TocBook> m_book;
    QString m_page;
    std::function<bool()> m_mayLeave;
};
