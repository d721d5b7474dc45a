#pragma once

#include "platform/FileSystem.h"
#include "startup/Session.h"

#include <QList>
#include <QString>

struct QuickNavLink
{
    QString book, page, title, anchor;
};

/// A node of the quick navigation: view, group, topic or category. Links hang on categories.
struct QuickNavNode
{
    QString id, name;
    QList<QuickNavNode> children;
    QList<QuickNavLink> links;
};

struct QuickNav
{
    QList<QuickNavNode> views;
    QStringList categories; ///< quick-navigation categories of the project
};

/// "QuickNav\Book_QuickNav.xml" of a project. A missing file is empty; an unreadable one raises 75.
QuickNav readQuickNav(Session &session, FileSystem &files, const QString &project);
