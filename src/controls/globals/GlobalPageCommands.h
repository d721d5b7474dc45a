#pragma once

#include "controls/session/ProjectSession.h"

#include <QCoreApplication>

/// The global pages in the shape of a book, for what handles pages of books.
TocBook globalBook();

/// The changes an author makes to the list of global pages. Each is one command that can be undone;
/// all raise QvError naming the file, 5 when a title, type or file name does not do, and have then
/// changed nothing.
class GlobalPageCommands
{
    Q_DECLARE_TR_FUNCTIONS(GlobalPageCommands)

public:
    explicit GlobalPageCommands(ProjectSession &session);

    /// Why a new page cannot have that file name; "" when it can.
    [[nodiscard]] QString problemOfFile(const QString &file);
    /// A name that is free: "Book_Welcome.htm", "Book_Welcome-2.htm". With "Book_" in its name a
    /// file does not become locked in copies of the project.
    [[nodiscard]] QString freeFile(const QString &wanted);

    /// Makes a page with a title and a heading and lists it behind the others.
    void create(const GlobalPage &page);
    /// Copies an HTML file, as it is, with the pictures and style sheets that it needs and that lie
    /// beside or below it. Raises 75 when a file of another content has one of these names.
    void take(const QString &source, const GlobalPage &page);
    /// Title and type of the page with the same id.
    void change(const GlobalPage &page);
    /// Out of the list, and its file out of the project.
    void remove(const GlobalPage &page);
    /// To a place among the others.
    void moveTo(const GlobalPage &page, int place);
    /// The page's file can be written again, or raises 70. Not a command: attributes are not
    /// undone.
    void unlock(const GlobalPage &page);

    /// Full path of a page's file; nothing when the stored value leads out of its folder.
    [[nodiscard]] std::optional<QString> pathOf(const GlobalPage &page) const;
    /// What the pages that refer to the file of a page are called, each once.
    QStringList usesOf(const GlobalPage &page);

private:
    using Pages = QList<GlobalPage>;
    void edit(StagedFiles &files, const std::function<void(Pages &)> &change);
    void require(const GlobalPage &page);
    void copyNeeded(StagedFiles &files, const QString &source, const QByteArray &bytes);
    [[nodiscard]] QString folder() const;

    ProjectSession &m_session;
    Session &m_values;
};
