#pragma once

#include "controls/session/ProjectSession.h"
#include "startup/FormWindow.h"
#include "workspace/RecentPlaces.h"

#include <memory>

class QV_DeveloperTreeOCX;
class ctlBooksTab;
class ctlGlobalsTab;
class ctlQuickNav;
class frmBuild;

namespace Ui {
class frmMainUI;
}

/// The main window: hosts the tree and the three editors of one project, passes project, book and
/// page between them, notes which changes no build has taken in yet, and guards closing.
class frmMainUI final : public FormWindow
{
    Q_OBJECT

public:
    /// `buildWindow` gives the build window and makes it, hidden, on the first touch.
    frmMainUI(Program &program, std::function<frmBuild &()> buildWindow, QWidget *parent = nullptr);
    ~frmMainUI() override;

    /// Hands the project to the tree and the three editors. Raises 53, 75 or 76 naming the file
    /// when the project cannot be read.
    void setProjectName(const QString &name);
    /// Shows the current project in the tree, read again from its files. Raises as above.
    void AssignProjectName();
    /// Starts the index manager; a failure is shown to the author.
    void CallIndexManager();

    /// Closing asks no fixed question while it is set. Cleared when the window loads.
    bool mbQuietClose = false;

protected:
    void mousePressEvent(QMouseEvent *event) override;

private:
    void Form_Load() override;
    void Form_Unload(bool &cancel) override;
    void Form_Click();
    [[nodiscard]] bool mayClose();
    [[nodiscard]] bool closeCompanions();

    // frmMainUIControls.cpp: the hosted controls and their events
    void hostControls();
    void connectTree();
    void connectGlobals();
    void connectBooks();
    void connectQuickNav();
    void QV_DeveloperTreeOCX1_EvtEnableGlobalsTab();
    void QV_DeveloperTreeOCX1_evtDisplayBookName();
    void QV_DeveloperTreeOCX1_evtGlobalPageName();
    void QV_DeveloperTreeOCX1_evtQVTreeQuickNavInfo(QString project, QString view, QString group,
                                                    QString topic, QString category, int level);
    void ctlGlobalsTab1_OnCategoryDeletion();
    void ctlGlobalsTab1_OnCategoryAddition();
    void ctlGlobalsTab1_OnRefreshTree();
    void ctlGlobalsTab1_OnprojectNameChange();
    void ctlGlobalsTab1_OnAddGlobalPage(bool changed);
    void ctlGlobalsTab1_OnAdditionQNCategory(bool changed);
    void ctlBooksTab1_OnAddImportFiles(bool changed);
    void ctlBooksTab1_OnAddSourceFiles(bool changed);
    void ctlBooksTab1_OnDeleteBook(bool changed);
    void ctlBooksTab1_pagesChanged(bool changed);
    void ctlQuickNav1_evtRefreshTree(bool changed);
    void ctlQuickNav1_evtOnDeletionofQuickNavInfo();
    void SSTab1_Click(int tab);
    void selectTab(int tab);
    void showEditor(int tab);
    void showPlace(const QString &file, int line);
    void showPage(const QString &file, int line);
    void noteChange(bool &flag);
    void clearLights();
    void inBooksHandler(QLatin1StringView handler, const std::function<void()> &body);

    // frmMainUIMenus.cpp: menus and buttons
    void connectMenus();
    void cmdBuild_Click();
    void cmdPreview_Click();
    void mnuBuildProject_Click();
    void mnuDoc_To_Doc_Click();
    void mnuQAChecks_Click();
    void mnuQNav_Click();
    void mnuSearch_Words_Click();
    void mnuIndexManager_Click();
    void mnu_Book_Linking_Report_Click();
    void mnuSelProject_Click();
    void mnuExit_Click();
    void mnuQV_Click();
    void mnuQVDeveloper_Click();
    void openBuildWindow();

    // frmMainUIEdit.cpp: undo, recent places, keys
    void connectEdit();
    void connectRecent();
    void showHistory();
    void noteHistory(ProjectAreas areas);
    void mnuUndo_Click();
    void mnuRedo_Click();
    void mnuShortcuts_Click();
    void showRecentProjects();
    void openRecent(const QString &project);
    void showRecentPages();
    void noteRecentPage();

    void say(const QString &whatWasDone);
    void inHandler(QLatin1StringView handler, const std::function<void()> &body);

    std::unique_ptr<Ui::frmMainUI> ui;
    std::function<frmBuild &()> m_buildWindow;
    ProjectSession m_project;
    QV_DeveloperTreeOCX *QV_DeveloperTreeOCX1;
    ctlGlobalsTab *ctlGlobalsTab1;
    ctlBooksTab *ctlBooksTab1;
    ctlQuickNav *ctlQuickNav1;
    bool m_switchingProject = false;
};
