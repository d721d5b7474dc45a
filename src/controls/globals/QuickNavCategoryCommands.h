#pragma once

#include "controls/session/ProjectSession.h"

#include <QCoreApplication>

/// How many categories of the navigation's tree have that name.
int usesInTree(const QuickNav &quickNav, const QString &category);

/// The changes an author makes to the list of quick-navigation categories. Each is one command that
/// can be undone; all raise QvError naming the file, 5 when a name does not do, and have then
/// changed nothing.
class QuickNavCategoryCommands
{
    Q_DECLARE_TR_FUNCTIONS(QuickNavCategoryCommands)

public:
    explicit QuickNavCategoryCommands(ProjectSession &session);

    void add(const QString &name);
    /// Categories of that name in the tree follow.
    void rename(const QString &name, const QString &now);
    /// Takes a name out of the list; categories in the tree keep theirs.
    void remove(const QString &name);

private:
    void perform(const QString &command, const std::function<void(QuickNav &)> &edit);

    ProjectSession &m_session;
};
