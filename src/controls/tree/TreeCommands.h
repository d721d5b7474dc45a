#pragma once

#include "controls/session/ProjectRequest.h"

#include <QKeySequence>
#include <QList>
#include <QModelIndexList>
#include <QObject>

#include <functional>

class ProjectSession;
class ProjectTreeModel;
class QKeyEvent;
class QMenu;

/// One entry of the tree's context menu.
struct TreeCommand
{
    QString text; ///< "" separates groups
    QLatin1StringView icon = {};
    QKeySequence key = {};
    QString whyNot = {}; ///< why it cannot be done now; "" when it can
    std::function<void()> run = {};
};

/// What an author can do with the chosen nodes of the project tree, by menu and by key. Changes are
/// asked for through the session; the editors of books, globals and quick navigation make them.
class TreeCommands final : public QObject
{
    Q_OBJECT

public:
    TreeCommands(ProjectSession &session, ProjectTreeModel &model, QObject *parent);

    /// The nodes that commands are for, in the model; the current one comes first.
    void setChosen(const QModelIndexList &nodes) { m_nodes = nodes; }

    void fill(QMenu &menu);
    [[nodiscard]] static bool isCommandKey(const QKeyEvent &key);
    /// Does what the key stands for, or says why it cannot be done. False for other keys.
    bool obey(const QKeyEvent &key);

Q_SIGNALS:
    void openRequested();
    void refreshRequested();
    void findRequested();
    void expandRequested();
    void collapseRequested();
    void showRequested(const QModelIndex &node);

private:
    using Action = ProjectRequest::Action;

    [[nodiscard]] QList<TreeCommand> commands();
    void addEditing(QList<TreeCommand> &list);
    void addMoving(QList<TreeCommand> &list);
    void addClipboard(QList<TreeCommand> &list);
    void addLooking(QList<TreeCommand> &list);
    void addUses(QList<TreeCommand> &list);
    [[nodiscard]] TreeCommand asking(Action action, const QString &text, QLatin1StringView icon,
                                     const QKeySequence &key, const QString &whyNot = {});
    [[nodiscard]] QModelIndex node() const;
    [[nodiscard]] QString newText() const;
    [[nodiscard]] QString reasonAgainstMany() const;
    [[nodiscard]] QString reasonAgainstMoving(Action action) const;
    void ask(Action action);
    void toClipboard(bool cut);

    ProjectSession &m_session;
    ProjectTreeModel &m_model;
    QModelIndexList m_nodes;
};
