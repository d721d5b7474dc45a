#pragma once

#include "controls/books/PageRules.h"
#include "controls/session/ProjectSession.h"

#include <QWidget>

#include <optional>

class CheckedField;
class ContextIdTable;
class EntryList;
class PageActions;
class QLabel;
class QPushButton;

/// What the book knows of the current page: title, file with its encoding and lock, and the ids by
/// which programs and other books ask for it.
class PageDetails final : public QWidget
{
    Q_OBJECT

public:
    PageDetails(ProjectSession &session, PageActions *pages, QWidget *parent = nullptr);

    /// Shows the session's current page; what the author is typing stays.
    void refresh();

private:
    void layOut();
    void connectParts();
    void showFile();
    void commitTitle();
    void setLinkIds(const QStringList &linkIds);
    [[nodiscard]] const PageRules::OtherPages &others();
    [[nodiscard]] QString linkIdProblem(const QString &linkId, const QStringList &entries);

    ProjectSession &m_session;
    PageActions *m_pages;
    TocBook m_book;
    std::optional<BookPage> m_page; ///< as shown
    std::optional<PageRules::OtherPages> m_others;
    CheckedField *m_title;
    QLabel *m_file;
    QLabel *m_encoding;
    QLabel *m_lock;
    QPushButton *cmdRename;
    QPushButton *cmdLock;
    ContextIdTable *m_contextIds;
    EntryList *m_linkIds;
};
