#pragma once

#include "controls/quicknav/QuickNavTree.h"
#include "controls/session/ProjectSession.h"

#include <functional>

/// The changes an author makes to the quick navigation of the open project. Each is one command
/// that can be undone; all raise 75 and have then changed nothing when the file cannot be read,
/// what they are about has gone, or a name does not do.
class QuickNavCommands final
{
public:
    explicit QuickNavCommands(ProjectSession &session);

    /// Adds a node below another at a place among its children (-1: behind them) and returns it.
    QuickNavRef add(const QuickNavRef &parent, const QString &name, int place = -1);
    void rename(const QuickNavRef &node, const QString &name);
    /// Deletes a node with all below; returns how many links went with it.
    int remove(const QuickNavRef &node);
    /// Moves a node among its neighbours by so many places; false when it is at the end already.
    bool moveBy(const QuickNavRef &node, int places);
    /// Moves a node below another of the level above its own. `place` counts the children as they
    /// are before the move.
    void moveTo(const QuickNavRef &node, const QuickNavRef &parent, int place = -1);
    /// Copies a node with all below, under a free name; returns the copy.
    QuickNavRef copyTo(const QuickNavRef &node, const QuickNavRef &parent, int place = -1);

    /// Adds links to a category, but none twice. Returns how many were added.
    int addLinks(const QuickNavRef &category, const QList<QuickNavLink> &links, int place = -1);
    void removeLinks(const QStringList &ids);
    /// Puts links of any categories into one, in the order given; `place` counts the links as they
    /// are before the move.
    void moveLinks(const QStringList &ids, const QuickNavRef &category, int place = -1);
    /// Moves links of one category among the others; false when they are at the end already.
    bool moveLinksBy(const QuickNavRef &category, const QStringList &ids, int places);
    void copyLinks(const QStringList &ids, const QuickNavRef &category, int place = -1);
    /// Title, anchor and target of the link with the same id.
    void changeLink(const QString &command, const QuickNavLink &link);

private:
    bool perform(const QString &command, const std::function<void(QuickNav &)> &edit);

    ProjectSession &m_session;
};
