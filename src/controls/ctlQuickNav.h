#pragma once

#include "projectfiles/QuickNavFile.h"

#include <QWidget>

#include <array>

class ProjectSession;
class QLabel;
class QListWidget;
class QTreeWidget;

/// The quick navigation of the project: views, groups, topics and categories side by side, and the
/// links of the chosen category below.
class ctlQuickNav final : public QWidget
{
    Q_OBJECT

public:
    explicit ctlQuickNav(ProjectSession &session, QWidget *parent = nullptr);

    void setProjectName(const QString &name);
    /// Shows the node the tree delivered: project, view, group, topic, category, level 0 to 4.
    void LoadQuickNavInfo(QString &project, QString &view, QString &group, QString &topic,
                          QString &category, int &level);
    void SelectQuickNavCategory(const QString &name); ///< shows one category's links
    void ResetQuickNavView();                         ///< shows no category

Q_SIGNALS:
    void evtRefreshTree(const QString &view, const QString &category, bool changed);
    void evtOnDeletionofQuickNavInfo();

private:
    static constexpr size_t columnCount = 4;

    void layOut();
    void showQuickNav();
    void fill(size_t column);
    void choose(size_t column, const QString &name);
    void showLinks();
    [[nodiscard]] QString problemOf(const QuickNavLink &link);
    void openLink(int row);
    [[nodiscard]] const QList<QuickNavNode> *nodesOf(size_t column) const;
    [[nodiscard]] const QuickNavNode *chosen(size_t column) const;

    ProjectSession &m_session;
    std::array<QListWidget *, columnCount> m_columns{};
    QList<QuickNavNode> m_views;
    QLabel *m_problem;
    QTreeWidget *tvwLinks;
};
