#pragma once

#include "controls/parts/LateWidget.h"
#include "controls/quicknav/QuickNavEditing.h"

class QuickNavLinkTable;
class OverviewPage;
class QLabel;
class QPushButton;
class QTabWidget;
class QuickNavColumns;

/// The quick navigation of the project: views, groups, topics and categories side by side with the
/// links of the chosen category below, and an overview of all of them.
class ctlQuickNav final : public LateWidget
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
    /// The quick navigation was written (`changed`), at this view and category; "" for several.
    void evtRefreshTree(const QString &view, const QString &category, bool changed);
    /// A node was deleted, which the tree shows no longer.
    void evtOnDeletionofQuickNavInfo();

private:
    void layOut() override;
    void makeParts();
    QWidget *browser();
    QWidget *links();
    void connectEditing();
    void connectParts();
    QPushButton *addButton(QWidget *parent, const QString &text, const QString &objectName);
    void showNode(const QuickNavRef &node);
    void showChosen();
    void showProblem();
    void enable();
    void addLinks();
    void chooseOtherPage();
    void suggest();
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

    ProjectSession &m_session;
    QuickNavContents m_contents;
    QuickNavEditing m_editing;
    // The content
    QLabel *m_problem = nullptr;
    QTabWidget *tabQuickNav = nullptr;
    QuickNavColumns *m_columns = nullptr;
    QuickNavLinkTable *tvwLinks = nullptr;
    OverviewPage *m_overview = nullptr;
    QPushButton *cmdAddLink = nullptr;
    QPushButton *cmdSuggest = nullptr;
    QPushButton *cmdOtherPage = nullptr;
    QPushButton *cmdRemoveLinks = nullptr;
};
