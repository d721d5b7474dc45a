#pragma once

#include "controls/session/ProjectSession.h"

#include <QObject>

class AddFiles;
class PageActions;

/// Does what other controls ask for books and pages (`ProjectSession::requested`).
class BookRequests final : public QObject
{
    Q_OBJECT

public:
    BookRequests(ProjectSession &session, PageActions *pages, AddFiles *files,
                 QObject *parent = nullptr);

Q_SIGNALS:
    void newBookRequested();
    void renameBookRequested(); ///< of the current one
    void renamePageRequested();
    void deleteBookRequested(const TocBook &book);
    void bookMoved();

private:
    using Node = ProjectRequest::Node;

    void answer(const ProjectRequest &request);
    void answerForBook(const ProjectRequest &request, const TocBook &book);
    void answerForPages(const ProjectRequest &request, const TocBook &book);
    void movePages(const ProjectRequest &request, const TocBook &from);
    void moveBook(const TocBook &book, qsizetype to);
    [[nodiscard]] std::optional<TocBook> listed(const Node &node) const;
    [[nodiscard]] QStringList pagesOf(const ProjectRequest &request, const TocBook &book) const;

    ProjectSession &m_session;
    PageActions *m_pages;
    AddFiles *m_files;
};
