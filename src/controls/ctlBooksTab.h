#pragma once

#include <QWidget>

class AddFiles;
class BookHeader;
class BookList;
class BookRequests;
class FindInPages;
class KeyWordsPane;
class LinksPane;
class PageActions;
class PageDetails;
class PageHistory;
class PageOutline;
class PagePane;
class PagePreview;
class ProjectSession;
class QTabWidget;
struct Program;
struct TocBook;

/// The editor of books: list and page outline, header of the book, and of the page its details,
/// source, preview, links and keywords.
class ctlBooksTab final : public QWidget
{
    Q_OBJECT

public:
    ctlBooksTab(Program &program, ProjectSession &session, QWidget *parent = nullptr);
    ~ctlBooksTab() override;

    [[nodiscard]] QString ProjectName() const;
    void setProjectName(const QString &name);
    void setBookName(const QString &name); ///< shows that book; "" shows none

    /// Saves unsaved page text or lets it go with the window, as the author answers (save /
    /// discard / cancel). False when the author wants to stay.
    bool mayLeave();

    /// Shows a place in the source of a page: path relative to the project folder, place in the
    /// text.
    void showPlace(const QString &path, qsizetype start, qsizetype length);
    /// Opens the window that finds and replaces in all pages.
    void findInPages();

Q_SIGNALS:
    void OnAddImportFiles(bool changed);
    void OnAddSourceFiles(bool changed);
    void OnDeleteBook(bool changed);
    void OnEditBookNameAcro(const QString &name, const QString &acronym);
    /// Pages, keywords or the list of books changed in another way.
    void pagesChanged(bool changed);
    /// A place in a global page is wanted, which another editor shows.
    void globalPlaceRequested(const QString &path, qsizetype start, qsizetype length);

private:
    bool event(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;

    void layOut();
    void addDetails();
    void showProject();
    void showBooks();
    void showBook(const TocBook &book);
    void followSelection();
    void showPage();
    void showPreview();
    void noticeChanges();

    // ctlBooksTabWiring.cpp
    void connectSession();
    void connectLists();
    void connectEditors();
    void connectRequests();
    void addKeys();
    void askNewBook();
    void askDeleteBook(const TocBook &book);
    void renameBook();
    void openPage(const QString &path, const QString &anchor);

    Program &m_program;
    ProjectSession &m_session;
    PageActions *m_actions;
    AddFiles *m_addFiles;
    BookRequests *m_requests;
    PageHistory *m_history;
    BookList *m_books;
    PageOutline *m_outline;
    BookHeader *m_header;
    PageDetails *m_details;
    PagePane *m_pane;
    PagePreview *m_preview;
    LinksPane *m_links;
    KeyWordsPane *m_keyWords;
    FindInPages *m_find = nullptr; ///< made when it is first asked for
    QTabWidget *tabDetails;
    QString m_shownBook; ///< identity of the book that outline and header show
};
