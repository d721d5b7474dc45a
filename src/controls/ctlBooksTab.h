#pragma once

#include "controls/parts/LateWidget.h"

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
/// source, preview, links and keywords. What the author asks for in other controls is done whether
/// these are made yet or not.
class ctlBooksTab final : public LateWidget
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
    /// A category of the quick navigation is wanted: the names of view, group, topic and its own.
    void quickNavRequested(const QStringList &names);

private:
    bool event(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;

    void layOut() override;
    void makeParts();
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
    FindInPages *m_find = nullptr; ///< made when it is first asked for
    // The content
    BookList *m_books = nullptr;
    PageOutline *m_outline = nullptr;
    BookHeader *m_header = nullptr;
    PageDetails *m_details = nullptr;
    PagePane *m_pane = nullptr;
    PagePreview *m_preview = nullptr;
    LinksPane *m_links = nullptr;
    KeyWordsPane *m_keyWords = nullptr;
    QTabWidget *tabDetails = nullptr;
    QString m_shownBook; ///< identity of the book that outline and header show
};
