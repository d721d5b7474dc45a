#pragma once

#include "controls/session/ProjectSession.h"
#include "projectfiles/CategoryFile.h"

#include <QCoreApplication>

/// One category that the project knows, with the books that carry it.
struct KnownCategory
{
    enum class Origin {
        Project,   ///< the project's own file, or the header of its table of contents
        BooksOnly, ///< carried by books, listed nowhere
    } origin = Origin::Project;
    Category category;
    QStringList books; ///< their names
};

/// The project's own categories, those that only books name behind them. Raises as `ownCategories`.
QList<KnownCategory> knownCategories(ProjectSession &session);
/// The names of the books that carry a category.
QStringList booksWith(const ProjectSession &session, const QString &category);

/// The changes an author makes to the project's categories. Each is one command that can be undone;
/// all raise QvError naming the file, 5 when a name does not do, and have then changed nothing.
class CategoryCommands
{
    Q_DECLARE_TR_FUNCTIONS(CategoryCommands)

public:
    explicit CategoryCommands(ProjectSession &session);

    /// `book` carries it at once, if one is named.
    void add(const QString &name, const QString &description = {},
             const std::optional<TocBook> &book = {});
    /// Name and description, in the project's own list and wherever the old name stands.
    void change(const QString &old, const QString &name, const QString &description);
    /// Books that carry `from` carry `into` instead, and `from` is in no list any more.
    void join(const QString &from, const QString &into);
    /// The same for all names of `from` at once, or taken away from the books with an empty `into`.
    void remove(const QString &name, const QString &into = {});

private:
    using Edit = std::function<void(QList<Category> &)>;
    void editList(StagedFiles &files, const Edit &edit);
    void drop(StagedFiles &files, const QString &name, const QString &into);

    ProjectSession &m_session;
    Session &m_values;
};
