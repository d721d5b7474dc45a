#pragma once

#include "controls/books/OutlineEdit.h"
#include "controls/session/ProjectSession.h"

#include <QObject>

class PageCommands;
class QWidget;

/// What an author does to pages of a book, with the questions that go before it and the word that
/// comes after it. Failures are shown. Used by the outline and for what other controls ask for.
class PageActions final : public QObject
{
    Q_OBJECT

public:
    PageActions(ProjectSession &session, QWidget *window);

    /// Asks for title and file of a new page and writes it.
    void askNew(const TocBook &book, const OutlinePlace &place);
    /// Shows what goes and what leads there, and deletes pages or takes them out of the book.
    void askDelete(const TocBook &book, const QStringList &pages);
    void askRenameFile(const TocBook &book, const QString &page);
    /// Asks for the book that the pages go to.
    void askMove(const TocBook &book, const QStringList &pages);

    void rename(const TocBook &book, const QString &page, const QString &title);
    void duplicate(const TocBook &book, const QString &page);
    void moveUp(const TocBook &book, const QStringList &pages);
    void moveDown(const TocBook &book, const QStringList &pages);
    void promote(const TocBook &book, const QStringList &pages);
    void demote(const TocBook &book, const QStringList &pages);
    void sort(const TocBook &book, const QString &parent);
    /// Within the book, or to another one, which also moves the files.
    void move(const TocBook &book, const QStringList &pages, const TocBook &target,
              const OutlinePlace &place);
    /// Sets or clears the read-only bit of the pages' files.
    void setLocked(const TocBook &book, const QStringList &pages, bool locked);

Q_SIGNALS:
    void changed(); ///< no build has taken it in

private:
    using Command = std::function<bool(PageCommands &)>;
    bool run(const QString &whatWasDone, const Command &command);
    bool leave(const TocBook &book, const QStringList &pages);

    ProjectSession &m_session;
    QWidget *m_window;
};
