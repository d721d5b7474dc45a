#pragma once

#include <QModelIndex>
#include <QWidget>

class ProjectSession;
class ProjectTreeModel;
class QLineEdit;
class QMenu;
class QSortFilterProxyModel;
class QTreeView;

/// The project tree: globals and their pages, books and their pages, quick-navigation nodes.
class QV_DeveloperTreeOCX final : public QWidget
{
    Q_OBJECT

public:
    explicit QV_DeveloperTreeOCX(ProjectSession &session, QWidget *parent = nullptr);

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

private:
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

    void layOut();
    void connectAll();
    [[nodiscard]] QModelIndex current() const; ///< in the model, not in the filtered view
    void rebuild();
    void chooseAgain(QStringList place);
    void expandPlaces(const QList<QStringList> &places);
    [[nodiscard]] QList<QStringList> expandedPlaces() const;
    void showNode(const QModelIndex &node);
    void followSession();
    void tellChoice();
    void tellQuickNav(const QModelIndex &node);
    void openCurrent();
    void fillMenu(QMenu &menu);
    void showMenu(const QPoint &at);

    ProjectSession &m_session;
    ProjectTreeModel *m_model;
    QSortFilterProxyModel *m_shown;
    QLineEdit *txtFilter;
    QTreeView *tvwProject;
    bool m_quiet = false; ///< the selection follows somebody else's change
};
