#pragma once

#include "controls/tree/TreeNode.h"
#include "controls/tree/TreeViewState.h"

#include <QWidget>

#include <optional>

class FilterBox;
class ProjectSession;
class ProjectTreeModel;
class QTreeView;
class TreeCommands;
class TreeFilter;
struct ProjectRequest;

/// The project tree: globals and their pages, books and their pages, quick-navigation nodes.
class QV_DeveloperTreeOCX final : public QWidget
{
    Q_OBJECT

public:
    explicit QV_DeveloperTreeOCX(ProjectSession &session, QWidget *parent = nullptr);
    ~QV_DeveloperTreeOCX() override;

    [[nodiscard]] QString ProjectName() const;
    void setProjectName(const QString &name);
    [[nodiscard]] QString BookName() const;       ///< book of the selected node, "" for none
    [[nodiscard]] QString GlobalPageName() const; ///< global page of the selected node, "" for none

    /// Rebuilds the tree from the project's files; keeps selection and expansion.
    /// Raises when the project cannot be read.
    void RefreshTree();
    /// Drops the quick-navigation node that was deleted in the quick-navigation editor.
    void DeleteQuickNavInfo();

Q_SIGNALS:
    void EvtEnableGlobalsTab(); ///< the project or the Globals node was chosen
    void evtDisplayBookName();  ///< a book or one of its pages was chosen
    void evtGlobalPageName();   ///< a global page was chosen
    /// A quick-navigation node was chosen: project, view, group, topic, category; level 0 to 4.
    void evtQVTreeQuickNavInfo(const QString &project, const QString &view, const QString &group,
                               const QString &topic, const QString &category, int level);
    /// The author wants to work on the chosen quick-navigation node: bring its editor to the front.
    void quickNavWanted();

private:
    bool event(QEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

    void layOut();
    void connectView();
    void connectCommands();
    void connectSession();
    [[nodiscard]] QModelIndex current() const; ///< in the model, not in the filtered view
    [[nodiscard]] QModelIndexList chosen() const;

    void readAgain();
    void changeProject();
    void follow(const std::function<void()> &change);
    void rebuildSection(TreeKind kind);
    void chooseAgain(QStringList place);
    void showNode(const QModelIndex &node);
    void followSession();
    void remember();

    void filter(const QString &text);
    void showFiltered();
    void leaveFilter();

    void choiceChanged();
    void tellChoice();
    void tellQuickNav(const QModelIndex &node);
    void openCurrent();
    void ask(const ProjectRequest &request);
    void showMenu(const QPoint &at);

    ProjectSession &m_session;
    ProjectTreeModel *m_model;
    TreeFilter *m_shown;
    TreeCommands *m_commands;
    FilterBox *m_filter;
    QTreeView *tvwProject;
    TreeViewState m_state;
    std::optional<TreeState> m_unfiltered; ///< as it was before the filter; while there is one
    QString m_folder;                      ///< of the project that is shown
    bool m_quiet = false;                  ///< the selection follows somebody else's change
};
