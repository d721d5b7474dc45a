#pragma once

#include "platform/FileSystem.h"
#include "startup/Session.h"

#include <QList>
#include <QString>

struct QuickNavLink
{
    QString book, page, title, anchor;
    QString id = {};
    friend bool operator==(const QuickNavLink &, const QuickNavLink &) = default;
};

/// A node of the quick navigation: view, group, topic or category. Links hang on categories.
struct QuickNavNode
{
    QString id, name;
    QList<QuickNavNode> children;
    QList<QuickNavLink> links;
    friend bool operator==(const QuickNavNode &a, const QuickNavNode &b);
};

struct QuickNav
{
    QList<QuickNavNode> views;
    QStringList categories; ///< quick-navigation categories of the project
    friend bool operator==(const QuickNav &a, const QuickNav &b);
};

/// "QuickNav\Book_QuickNav.xml" of a project. A missing file is empty; an unreadable one raises 75.
/// Each node and link has an id of its own: what stands in the file without one, or with one that
/// is taken, gets a new one here, and the same when the file is written.
QuickNav readQuickNav(Session &session, FileSystem &files, const QString &project);

/// Makes the file or rewrites what `quickNav` holds, keeping what is not known here; nodes and
/// links are meant by their ids, and one without an id gets a new one. The previous version goes to
/// _Backup\. Raises 5 for nodes below a category or links elsewhere.
void writeQuickNav(Session &session, FileSystem &files, const QString &project,
                   const QuickNav &quickNav);

/// The pages that links mean by book (acronym) and page (id), and where they lie now; a book or
/// page without an entry stays. Returns how many links changed.
struct QuickNavTarget
{
    QString book, page; ///< `page` empty: all pages of the book
};
int redirectLinks(QuickNav &quickNav, const QuickNavTarget &from, const QuickNavTarget &to);
