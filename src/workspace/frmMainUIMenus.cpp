#include "workspace/frmMainUI.h"

#include "controls/ctlBuildTab.h"
#include "resources/Icons.h"
#include "resources/Texts.h"
#include "startup/ExternalPrograms.h"
#include "startup/Session.h"
#include "startup/StartUp.h"
#include "ui_frmMainUI.h"
#include "workspace/ToolLogs.h"
#include "workspace/frmBuild.h"

#include <QPointer>

using namespace Qt::StringLiterals;

void frmMainUI::connectMenus()
{
    using Self = frmMainUI;
    connect(ui->cmdBuild, &QPushButton::clicked, this, &Self::cmdBuild_Click);
    connect(ui->cmdPreview, &QPushButton::clicked, this, &Self::cmdPreview_Click);
    connect(ui->mnuBuildProject, &QAction::triggered, this, &Self::mnuBuildProject_Click);
    connect(ui->mnuDoc_To_Doc, &QAction::triggered, this, &Self::mnuDoc_To_Doc_Click);
    connect(ui->mnuQAChecks, &QAction::triggered, this, &Self::mnuQAChecks_Click);
    connect(ui->mnuQNav, &QAction::triggered, this, &Self::mnuQNav_Click);
    connect(ui->mnuSearch_Words, &QAction::triggered, this, &Self::mnuSearch_Words_Click);
    connect(ui->mnuIndexManager, &QAction::triggered, this, &Self::mnuIndexManager_Click);
    connect(ui->mnu_Book_Linking_Report, &QAction::triggered, this,
            &Self::mnu_Book_Linking_Report_Click);
    connect(ui->mnuSelProject, &QAction::triggered, this, &Self::mnuSelProject_Click);
    connect(ui->mnuExit, &QAction::triggered, this, &Self::mnuExit_Click);
    connect(ui->mnuQV, &QAction::triggered, this, &Self::mnuQV_Click);
    connect(ui->mnuQVDeveloper, &QAction::triggered, this, &Self::mnuQVDeveloper_Click);

    ui->cmdBuild->setIcon(icon("build"_L1));
    ui->cmdPreview->setIcon(icon("preview"_L1));
    ui->mnuSelProject->setIcon(icon("folder-open"_L1));
    ui->mnuBuildProject->setIcon(icon("build"_L1));
    ui->mnuQV->setIcon(icon("help"_L1));
    ui->mnuQVDeveloper->setIcon(icon("information"_L1));
}

void frmMainUI::cmdBuild_Click()
{
    inHandler("cmdBuild_Click"_L1, [this] { openBuildWindow(); });
}

void frmMainUI::mnuBuildProject_Click()
{
    inHandler("mnuBuildProject_Click"_L1, [this] { openBuildWindow(); });
}

// A build that runs keeps its window as it is.
void frmMainUI::openBuildWindow()
{
    frmBuild &build = m_buildWindow();
    ctlBuildTab &control = build.ctlBuildTab1();
    if (!control.isBusy()) {
        build.setWindowTitle(text(Text::BuildStep1));
        control.setProjectName(m_program.session.projectName);
        control.setStartGuard(
            [main = QPointer(this)] { return !main || main->m_project.mayLeave(); });
    }
    connect(&build, &frmBuild::placeRequested, this, &frmMainUI::showPlace, Qt::UniqueConnection);
    m_program.navigator.show(Form::Build);
}

void frmMainUI::mnuDoc_To_Doc_Click()
{
    inHandler("mnuDoc_To_Doc_Click"_L1, [this] { showDocToDocLog(m_program); });
}

void frmMainUI::mnuQAChecks_Click()
{
    inHandler("mnuQAChecks_Click"_L1, [this] { showQaLog(m_program); });
}

void frmMainUI::mnuQNav_Click()
{
    inHandler("mnuQNav_Click"_L1, [this] { showQuickNavLog(m_program); });
}

void frmMainUI::mnuSearch_Words_Click()
{
    inHandler("mnuSearch_Words_Click"_L1, [this] { showSearchWordsLog(m_program); });
}

void frmMainUI::cmdPreview_Click()
{
    inHandler("cmdPreview_Click"_L1, [this] { OpenHelpTopic(m_program, u"Content"_s, u" "_s); });
}

void frmMainUI::mnuQV_Click()
{
    inHandler("mnuQV_Click"_L1, [this] { OpenHelpTopic(m_program, u"Content"_s, u" "_s); });
}

void frmMainUI::mnuQVDeveloper_Click()
{
    inHandler("mnuQVDeveloper_Click"_L1, [this] { showSplashScreen(m_program); });
}

void frmMainUI::mnuIndexManager_Click()
{
    trapped(indexManagerFailed, [this] { startIndexManager(m_program); });
}

void frmMainUI::CallIndexManager()
{
    mnuIndexManager_Click();
}

void frmMainUI::mnu_Book_Linking_Report_Click()
{
    inHandler("mnu_Book_Linking_Report_Click"_L1,
              [this] { m_program.navigator.show(Form::IBLReport); });
}

// The close itself says whether the author refused; then nothing else is closed.
void frmMainUI::mnuSelProject_Click()
{
    inHandler("mnuSelProject_Click"_L1, [this] {
        m_switchingProject = true;
        m_program.session.gbFromMainWindow = true;
        m_program.session.closeWithoutAsking = false;
        if (close()) {
            m_program.navigator.unload(Form::Build);
            m_program.navigator.unload(Form::MergeProjects);
            m_program.navigator.show(Form::SelPrjType);
        }
        m_switchingProject = false;
        m_program.session.closeWithoutAsking = false;
    });
}

void frmMainUI::mnuExit_Click()
{
    inHandler("mnuExit_Click"_L1, [this] {
        mbQuietClose = false;
        close();
        m_program.session.closeWithoutAsking = false;
    });
}
