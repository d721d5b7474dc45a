#pragma once

#include "controls/session/ProjectSession.h"

#include <QObject>

#include <functional>

class OutlineTree;
class PageActions;
class QAction;
class QTreeWidgetItem;

/// The commands of the outline: its context menu and its keys.
class OutlineMenu final : public QObject
{
    Q_OBJECT

public:
    OutlineMenu(ProjectSession &session, OutlineTree *tree, PageActions *pages);

    /// Enables what can be done with the pages chosen now.
    void refresh();
    [[nodiscard]] QAction *newPage() const { return m_new; }

Q_SIGNALS:
    void listRequested(); ///< of the pages that the folder holds and the book does not list

private:
    using Pages = QStringList;
    /// On how many pages a command works.
    enum class Needs { Book, OnePage, SomePages };

    QAction *add(const char *objectName, const QString &text, const QKeySequence &keys, Needs needs,
                 const std::function<void(const TocBook &, const Pages &)> &command);
    void addPageCommands();
    void addMoves();
    void addLocks();
    void addSeparator();
    void copyPath(const TocBook &book, const QString &page);
    [[nodiscard]] bool canRun(const QAction *action) const;

    ProjectSession &m_session;
    OutlineTree *m_tree;
    PageActions *m_pages;
    QAction *m_new;
};
