#pragma once

#include "projectfiles/TableOfContents.h"

#include <QMetaType>
#include <QString>
#include <QStringList>

#include <optional>

/// What the author asks for in one control and another control does: the tree shows everything, the
/// editors of books, globals and quick navigation change it.
struct ProjectRequest
{
    enum class Action {
        New,        ///< a book (Books), a page (at the end of a Book, after a Page, in Globals,
                    ///< after a GlobalPage), a quick-navigation node below the node
        Rename,     ///< title or name, of a Book, Page, GlobalPage or QuickNav node
        RenameFile, ///< of a Page or GlobalPage
        Delete,     ///< of a Book, Page, GlobalPage or QuickNav node
        MoveUp,     ///< of the same kinds, among their siblings
        MoveDown,
        Promote, ///< of a Page
        Demote,
        MoveTo,   ///< to `target`, at `place` there: a Book in Books, a Page below a Book or Page,
                  ///< a GlobalPage in Globals, a QuickNav node below one of the level above
        AddFiles, ///< `files` into the Book `node`
        AddLink,  ///< of a Page to the quick-navigation category `target`
        Unlock,   ///< a Page or GlobalPage
    } action = Action::New;

    /// One node of the project.
    struct Node
    {
        enum class Kind {
            Project,
            Globals,
            GlobalPage,
            Books,
            Book,
            Page,
            QuickNav
        } kind = Kind::Project;
        std::optional<TocBook> book = {}; ///< of Book and Page
        QString page = {};                ///< id of a page, global page or QuickNav node
        QStringList path = {}; ///< of QuickNav: view, group, topic, category names; "" top
    };
    Node node;
    QList<Node> others = {}; ///< further nodes of the same kind, when several are chosen
    std::optional<Node> target = {};
    int place = -1; ///< before this child of `target`, counted before the move; -1: behind all
    QStringList files = {}; ///< product paths
};
Q_DECLARE_METATYPE(ProjectRequest)
