#pragma once

#include "controls/session/ProjectSession.h"

#include <QSet>

class OutlineTree;
class QTreeWidgetItem;

/// Fills the tree with a book's pages and says with each what is wrong with it: its file, and its
/// links as far as they are known.
class OutlineRows final
{
public:
    OutlineRows(ProjectSession &session, OutlineTree *tree);

    /// Puts all pages into the empty tree, unfolded but for those of `folded`. Raises as reading
    /// the book and its folder.
    void fill(const TocBook &book, const QSet<QString> &folded);
    /// Says again what is wrong, from what is known of the links now.
    void showProblems();
    /// Hides what does not hold `text` in one of its columns; pages above one that does stay.
    void filter(const QString &text);

private:
    /// The files of the book's folder by name, true for those that are locked.
    using Files = QHash<QString, bool>;
    struct Book
    {
        TocBook entry;
        Files files;
        QSet<QString> twice;
    };

    [[nodiscard]] Files filesOf(const TocBook &book) const;
    void add(QTreeWidgetItem *parent, const QList<BookPage> &pages, const Book &book);
    void showProblem(QTreeWidgetItem *item);

    ProjectSession &m_session;
    OutlineTree *m_tree;
};
