#pragma once

#include <QWidget>

class AddSourceFiles;
class BookHeader;
class BookList;
class PageOutline;
class PagePane;
class PagePreview;
class ProjectSession;
class QTabWidget;
struct Program;
struct TocBook;

/// The editor of books: list, header, page outline, page source and preview.
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

Q_SIGNALS:
    void OnAddImportFiles(bool changed);
    void OnAddSourceFiles(bool changed);
    void OnDeleteBook(bool changed);
    void OnEditBookNameAcro(const QString &name, const QString &acronym);

private:
    bool event(QEvent *event) override;

    void layOut();
    void connectSession();
    void connectParts();
    void showProject();
    void showBooks();
    void showBook(const TocBook &book);
    void followSelection();
    void showPreview();
    void noticeChanges();

    void askNewBook();
    void askDeleteBook(const TocBook &book);
    void openPage(const QString &path);

    Program &m_program;
    ProjectSession &m_session;
    BookList *m_books;
    PageOutline *m_outline;
    BookHeader *m_header;
    PagePane *m_pane;
    PagePreview *m_preview;
    AddSourceFiles *m_addSourceFiles;
    QTabWidget *tabDetails;
    QString m_shownBook; ///< identity of the book that outline and header show
};
