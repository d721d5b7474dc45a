#pragma once

#include "controls/books/OutlineEdit.h"
#include "controls/session/ProjectSession.h"

#include <QCoreApplication>

/// The changes an author makes to the pages of a book. Pages are meant by their ids, which they
/// keep. Each is one command that can be undone, and raises as `ProjectSession::perform`; besides,
/// 5 when a page is not there any more or would lie too deep. What was done is false when there was
/// nothing to do.
class PageCommands
{
    Q_DECLARE_TR_FUNCTIONS(PageCommands)

public:
    explicit PageCommands(ProjectSession &session);

    /// A file name for a new page of that title, which is free in the book's folder.
    QString proposedFile(const TocBook &entry, const QString &title);
    /// Writes a new page and lists it; its id. Raises 75 when there is such a file.
    QString add(const TocBook &entry, const QString &title, const QString &file,
                const OutlinePlace &place);
    /// Copies a page without those below it, to behind itself; the id of the copy.
    QString duplicate(const TocBook &entry, const QString &id);
    /// Lists files of the book's folder.
    bool list(const TocBook &entry, const QStringList &files, const QStringList &titles);
    /// Takes pages and all below them out of the book; `alsoFiles` deletes their files, but for
    /// those that another place in the project lists too. Keywords of the pages go.
    bool remove(const TocBook &entry, const QStringList &ids, bool alsoFiles);

    bool rename(const TocBook &entry, const QString &id, const QString &title);
    bool moveUp(const TocBook &entry, const QStringList &ids);
    bool moveDown(const TocBook &entry, const QStringList &ids);
    bool promote(const TocBook &entry, const QStringList &ids);
    bool demote(const TocBook &entry, const QStringList &ids);
    bool move(const TocBook &entry, const QStringList &ids, const OutlinePlace &place);
    bool sort(const TocBook &entry, const QString &parent);

    bool setContextIds(const TocBook &entry, const QString &id, const QList<ContextId> &ids);
    bool setLinkIds(const TocBook &entry, const QString &id, const QStringList &linkIds);

    /// "Start", or "3 pages" when there are several.
    QString named(const TocBook &entry, const QStringList &ids);

private:
    using Edit = std::function<bool(Book &)>;
    using Rearrange = bool (*)(QList<BookPage> &, const QSet<QString> &);
    bool change(const QString &name, const TocBook &entry, const Edit &edit);
    bool rearrange(const QString &name, const TocBook &entry, const QStringList &ids,
                   Rearrange how);
    QString freeFile(const TocBook &entry, const QString &folder, const QString &title);
    QString addFile(StagedFiles &files, const TocBook &entry, const BookPage &page,
                    const QByteArray &bytes, const OutlinePlace &place);
    void setFilesAside(StagedFiles &files, const TocBook &entry, const QList<BookPage> &gone,
                       const QList<BookPage> &left);
    QSet<QString> filesOfOthers(const TocBook &entry);

    ProjectSession &m_session;
};

/// Reads a book as staged, lets `edit` change it and writes it with today's date; false when `edit`
/// says that it changed nothing.
bool editBook(ProjectSession &session, StagedFiles &files, const TocBook &entry,
              const std::function<bool(Book &)> &edit);
