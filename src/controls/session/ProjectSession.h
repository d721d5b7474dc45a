#pragma once

#include "controls/session/ChangeHistory.h"
#include "controls/session/ProjectRequest.h"
#include "controls/session/UndoBin.h"
#include "projectfiles/BookFile.h"
#include "projectfiles/GlobalBook.h"
#include "projectfiles/QuickNavFile.h"
#include "projectfiles/TableOfContents.h"
#include "projectfiles/changes/StagedFiles.h"
#include "startup/Program.h"

#include <QHash>
#include <QObject>

#include <functional>
#include <memory>
#include <optional>

class ChangeWatch;
class OpenMark;
class ProjectPages;

/// What a change concerns, for the note that no build has taken it in yet.
enum class ProjectArea { Books = 1, Globals = 2, QuickNav = 4 };
Q_DECLARE_FLAGS(ProjectAreas, ProjectArea)
Q_DECLARE_OPERATORS_FOR_FLAGS(ProjectAreas)

/// What the editor of an open page knows of it.
struct PageState
{
    bool unsaved = false;       ///< text of the author that is not on disk yet
    bool changedOnDisk = false; ///< by somebody else, since it was read
    friend bool operator==(const PageState &, const PageState &) = default;
};

/// The one open project that the hosted controls share: its parsed table of contents, the books
/// read so far (each on first need), globals, quick navigation, and the current selection.
/// Controls talk to each other only through its signals.
class ProjectSession final : public QObject
{
    Q_OBJECT

public:
    explicit ProjectSession(Program &program, QObject *parent = nullptr);
    ~ProjectSession() override;

    /// Opens a project, or does nothing when it is open already. "" closes. Raises 53, 75 or 76
    /// naming the file when the project cannot be read; nothing is open then. A change that a dying
    /// program began is finished first, and the author is told.
    void open(const QString &project);
    /// Reads the project's files again. Raises as `open`, and keeps what it had then.
    void reread();
    /// The open project got another name on disk. What can be undone is brought in step by `rule`,
    /// and everything is read again. Raises as `open`.
    void wasRenamed(const QString &now, const ChangeHistory::Rule &rule);
    /// Lets go of what is held in the project's folder, so that the folder can be moved; and takes
    /// hold of it again.
    void letGo();
    void takeHold();
    /// Looks in the background, at once, what changed on disk since it was read here; that is read
    /// again and told by the signals below. What cannot be read is said in a message, but not twice
    /// in a row for the same reason. The same happens every few seconds.
    void noticeChanges();
    /// An editor wants to hear by `filesChanged` when somebody else changes a file of the project
    /// (full path); `stamp` is what it looked like when it was read. Call it again after reading or
    /// writing the file. As many `unwatch` end it.
    void watch(const QString &path, const std::optional<FileStamp> &stamp = {});
    void unwatch(const QString &path);

    [[nodiscard]] Program &program() const { return m_program; }
    [[nodiscard]] const QString &projectName() const { return m_project; }
    [[nodiscard]] QString folder() const; ///< of the project, with backslash; "" when none is open
    /// A path in the machine's form, for tool tips and messages; as it is where it has no such
    /// form.
    [[nodiscard]] QString shownPath(const QString &path) const;
    [[nodiscard]] const TocHeader &header() const { return m_toc.header; }
    [[nodiscard]] const QList<TocBook> &books() const { return m_toc.books; }

    /// One command of the author that changes files of the project. `command` works on staged
    /// files; all it staged then happens at once or not at all, can be undone under `name` ("Delete
    /// book Pumps"), is read again here and told to the controls. Raises what `command` raises, and
    /// 75 when another author changed one of the files meanwhile; nothing has changed then. Locked
    /// files are listed first: raises Unwinding when the author does not unlock them. False when
    /// there was nothing to change.
    bool perform(const QString &name, const std::function<void(StagedFiles &)> &command);
    /// The same for a command that takes long: `command` runs on a worker under the progress dialog
    /// of `title`, can be stopped (raises Unwinding), and must not touch the session.
    bool performLong(const QString &name, const QString &title,
                     const std::function<void(StagedFiles &, const Progress &)> &command);
    /// The same for a change that `prepare` works out on that worker.
    bool performPrepared(const QString &name, const QString &title,
                         const std::function<FileChanges(const Progress &)> &prepare);
    /// The same for a change that was worked out before.
    bool performChanges(const QString &name, FileChanges changes, const Progress &progress = {});
    /// Take back the last command, do the next one again. Raise as `perform`; then nothing has
    /// changed. Nothing happens when there is none, or when the open page cannot be left.
    void undo();
    void redo();
    [[nodiscard]] ChangeHistory &history() { return m_history; }
    /// What all pages say and how they link to each other.
    [[nodiscard]] ProjectPages &pages() { return *m_pages; }
    /// A free place below _Backup\ where undoing finds a file or folder that a command takes out
    /// of the project (full path; its parent is made). It is emptied when the project is closed.
    QString binPlace(const QString &name);
    /// How work that takes long is run: under a progress dialog, on a worker. Without one it runs
    /// where it is called.
    using Runner = std::function<void(const QString &title,
                                      const std::function<void(const Progress &)> &work)>;
    void setRunner(Runner runner) { m_runner = std::move(runner); }
    void runLong(const QString &title, const std::function<void(const Progress &)> &work);

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
    /// Whether the book file changed on disk since it was read here.
    [[nodiscard]] bool changedOnDisk(const TocBook &entry) const;

    [[nodiscard]] const std::optional<TocBook> &currentBook() const { return m_book; }
    [[nodiscard]] const QString &currentPage() const { return m_page; } ///< id in the book, or ""
    /// Makes a book, or a page of it, the current one; nothing means none. False, and nothing
    /// changed, when the page that is open now cannot be left.
    bool select(const std::optional<TocBook> &book, const QString &page = {});
    /// Asked before the selection changes or a command is undone; false keeps everything. `owner`
    /// has one guard, which goes with it.
    void setLeaveGuard(QObject *owner, std::function<bool()> guard);
    /// Asks the guards: whether what is being typed has been put away.
    [[nodiscard]] bool mayLeave();

    /// What the editor that shows a page (full path) says of it, for all to show. A page that is
    /// closed, or as it is on disk, has the default one.
    void setPageState(const QString &path, PageState state);
    [[nodiscard]] PageState pageState(const QString &path) const;

Q_SIGNALS:
    /// Another project, or everything was read again.
    void wasReset();
    /// The list of books changed.
    void booksChanged();
    /// The file of one book changed.
    void bookChanged(const TocBook &entry);
    void quickNavChanged();
    void globalPagesChanged();
    /// The project's own or the default categories changed.
    void categoriesChanged();
    void keyWordsChanged();
    /// Files of the project changed by a command, by undoing, or (as far as it was noticed) by
    /// somebody else. Paths relative to the project folder, files that went included.
    void filesChanged(const QStringList &paths);
    /// The state of an open page (full path) changed.
    void pageStateChanged(const QString &path);
    /// A command was undone or done again; no build has taken it in.
    void historyMoved(ProjectAreas areas);
    void selectionChanged();
    /// The author wants to work on the current book or page: bring its editor to the front.
    void openRequested();
    /// What was just done, in words for the status bar.
    void done(const QString &what);
    /// The author asks in one control for what another does.
    void requested(const ProjectRequest &request);

private:
    struct ReadBook
    {
        Book book;
        FileStamp stamp;
    };

    // ProjectSession.cpp: what is open, and what was read of it
    [[nodiscard]] QString bookPath(const TocBook &entry) const;
    [[nodiscard]] QString globalsPath() const;
    [[nodiscard]] std::optional<TocBook> listed(const TocBook &book) const;
    void close();
    void emptyBin();
    void readProject(const QString &project);
    void watchLists();
    void finishWhatWasInterrupted();
    void readToc();
    void forgetContents();
    void followSelection(const QList<TocBook> &before);
    void followPage();
    [[nodiscard]] FileStamp stampOf(const QString &path) const;

    // SessionChanges.cpp: commands, and what they or others change
    void requireOpen() const;
    void absorb(const FileChanges &changes);
    void watchAnew(const FileChanges &changes);
    void rereadWhat(const QStringList &paths);
    void rereadBooksWhat(const std::function<bool(const QString &)> &isChanged);
    void othersChanged(const QStringList &paths);
    void move(bool back);
    void refuse(bool back, const QString &name, const QString &path);

    Program &m_program;
    QString m_project;
    Toc m_toc;
    QHash<QString, ReadBook> m_read;
    std::optional<QList<GlobalPage>> m_globals;
    std::optional<QuickNav> m_quickNav;
    std::optional<TocBook> m_book;
    QString m_page;
    QHash<QObject *, std::function<bool()>> m_guards;
    QHash<QString, PageState> m_pageStates;
    ChangeHistory m_history;
    Runner m_runner;
    UndoBin m_bin;
    std::unique_ptr<OpenMark> m_mark; ///< tells others that the project is open here
    QStringList m_finished;          ///< what became of interrupted changes, in words
    QHash<QString, int> m_editorsOf; ///< editors that watch a file, by folded path
    QString m_noticedProblem;
    std::unique_ptr<ChangeWatch> m_watch;
    std::unique_ptr<ProjectPages> m_pages; ///< last: it listens to the session
};
