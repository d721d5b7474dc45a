#include "workspace/frmMainUI.h"

#include "catalogue/StatusIndicators.h"
#include "controls/QV_DeveloperTreeOCX.h"
#include "controls/ctlBooksTab.h"
#include "controls/ctlBuildTab.h"
#include "controls/ctlGlobalsTab.h"
#include "controls/ctlQuickNav.h"
#include "platform/FileSystem.h"
#include "platform/Messages.h"
#include "platform/Paths.h"
#include "platform/Processes.h"
#include "resources/Icons.h"
#include "startup/PageText.h"
#include "startup/Session.h"
#include "tools/PageReference.h"
#include "ui_frmMainUI.h"
#include "workspace/frmBuild.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace {

enum Tab { GlobalsTab, BooksTab, QuickNavTab };

/// Where a line of a text begins, counted from 1; the beginning of the text for any other number.
qsizetype startOfLine(QStringView text, int line)
{
    qsizetype start = 0;
    for (int at = 1; at < line; ++at) {
        const qsizetype end = text.indexOf(u'\n', start);
        if (end < 0)
            return 0;
        start = end + 1;
    }
    return start;
}

/// Style sheets and data files.
bool isTextName(const QString &file)
{
    return file.endsWith(".css"_L1, Qt::CaseInsensitive)
           || file.endsWith(".xml"_L1, Qt::CaseInsensitive);
}

} // namespace

void frmMainUI::hostControls()
{
    QV_DeveloperTreeOCX1->setObjectName(u"QV_DeveloperTreeOCX1"_s);
    ctlGlobalsTab1->setObjectName(u"ctlGlobalsTab1"_s);
    ctlBooksTab1->setObjectName(u"ctlBooksTab1"_s);
    ctlQuickNav1->setObjectName(u"ctlQuickNav1"_s);

    ui->splWorkspace->insertWidget(0, QV_DeveloperTreeOCX1);
    ui->splWorkspace->setStretchFactor(1, 1);
    ui->splWorkspace->setSizes({280, 900});

    ui->SSTab1->addTab(icon("globals"_L1), tr("Gl&obals"));
    ui->SSTab1->addTab(icon("books"_L1), tr("&Books"));
    ui->SSTab1->addTab(icon("quicknav"_L1), tr("&Quick Navigation"));
    ui->SSTab1->setExpanding(false);
    ui->SSTab1->updateGeometry(); // a hidden tab bar does not tell that it has got tabs
    setTabOrder(QV_DeveloperTreeOCX1->focusProxy(), ui->SSTab1); // the editors come behind it
    for (QWidget *const editor :
         std::initializer_list<QWidget *>{ctlGlobalsTab1, ctlBooksTab1, ctlQuickNav1})
        ui->grdEditors->addWidget(editor, 0, 0);
    showEditor(GlobalsTab);

    connect(ui->SSTab1, &QTabBar::currentChanged, this, &frmMainUI::SSTab1_Click);
    connectTree();
    connectGlobals();
    connectBooks();
    connectQuickNav();
    connect(&m_project, &ProjectSession::done, this, &frmMainUI::say);
    connect(&m_project, &ProjectSession::openRequested, this, [this] { selectTab(BooksTab); });
}

void frmMainUI::connectTree()
{
    using Tree = QV_DeveloperTreeOCX;
    using Self = frmMainUI;
    connect(QV_DeveloperTreeOCX1, &Tree::EvtEnableGlobalsTab, this,
            &Self::QV_DeveloperTreeOCX1_EvtEnableGlobalsTab);
    connect(QV_DeveloperTreeOCX1, &Tree::evtDisplayBookName, this,
            &Self::QV_DeveloperTreeOCX1_evtDisplayBookName);
    connect(QV_DeveloperTreeOCX1, &Tree::evtGlobalPageName, this,
            &Self::QV_DeveloperTreeOCX1_evtGlobalPageName);
    connect(QV_DeveloperTreeOCX1, &Tree::evtQVTreeQuickNavInfo, this,
            &Self::QV_DeveloperTreeOCX1_evtQVTreeQuickNavInfo);
    connect(QV_DeveloperTreeOCX1, &Tree::quickNavWanted, this, [this] { selectTab(QuickNavTab); });
}

void frmMainUI::connectGlobals()
{
    using Globals = ctlGlobalsTab;
    using Self = frmMainUI;
    connect(ctlGlobalsTab1, &Globals::OnCategoryDeletion, this,
            &Self::ctlGlobalsTab1_OnCategoryDeletion);
    connect(ctlGlobalsTab1, &Globals::OnCategoryAddition, this,
            &Self::ctlGlobalsTab1_OnCategoryAddition);
    connect(ctlGlobalsTab1, &Globals::OnRefreshTree, this, &Self::ctlGlobalsTab1_OnRefreshTree);
    connect(ctlGlobalsTab1, &Globals::OnprojectNameChange, this,
            &Self::ctlGlobalsTab1_OnprojectNameChange);
    connect(ctlGlobalsTab1, &Globals::OnAddGlobalPage, this,
            [this](const QString &, const QString &, bool changed) {
                ctlGlobalsTab1_OnAddGlobalPage(changed);
            });
    connect(ctlGlobalsTab1, &Globals::OnAdditionQNCategory, this,
            &Self::ctlGlobalsTab1_OnAdditionQNCategory);
    connect(ctlGlobalsTab1, &Globals::openRequested, this, [this] { selectTab(GlobalsTab); });
}

// A book's new name or acronym shows in the tree by the project session.
void frmMainUI::connectBooks()
{
    using Books = ctlBooksTab;
    using Self = frmMainUI;
    connect(ctlBooksTab1, &Books::OnAddImportFiles, this, &Self::ctlBooksTab1_OnAddImportFiles);
    connect(ctlBooksTab1, &Books::OnAddSourceFiles, this, &Self::ctlBooksTab1_OnAddSourceFiles);
    connect(ctlBooksTab1, &Books::OnDeleteBook, this, &Self::ctlBooksTab1_OnDeleteBook);
    connect(ctlBooksTab1, &Books::pagesChanged, this, &Self::ctlBooksTab1_pagesChanged);
    connect(ctlBooksTab1, &Books::globalPlaceRequested, this,
            [this](const QString &path, qsizetype start, qsizetype length) {
                selectTab(GlobalsTab);
                ctlGlobalsTab1->showPlace(path, start, length);
            });
    connect(ctlBooksTab1, &Books::quickNavRequested, this, [this](const QStringList &names) {
        selectTab(QuickNavTab);
        QV_DeveloperTreeOCX1_evtQVTreeQuickNavInfo(ctlBooksTab1->ProjectName(), names.value(0),
                                                   names.value(1), names.value(2), names.value(3),
                                                   static_cast<int>(names.size()));
    });
}

void frmMainUI::connectQuickNav()
{
    connect(ctlQuickNav1, &ctlQuickNav::evtRefreshTree, this,
            [this](const QString &, const QString &, bool changed) {
                ctlQuickNav1_evtRefreshTree(changed);
            });
    connect(ctlQuickNav1, &ctlQuickNav::evtOnDeletionofQuickNavInfo, this,
            &frmMainUI::ctlQuickNav1_evtOnDeletionofQuickNavInfo);
}

void frmMainUI::QV_DeveloperTreeOCX1_EvtEnableGlobalsTab()
{
    inHandler("QV_DeveloperTreeOCX1_EvtEnableGlobalsTab"_L1, [this] {
        ctlBooksTab1->setProjectName(QV_DeveloperTreeOCX1->ProjectName());
        ctlBooksTab1->setBookName(QV_DeveloperTreeOCX1->BookName());
        selectTab(GlobalsTab);
        showEditor(GlobalsTab);
    });
}

void frmMainUI::QV_DeveloperTreeOCX1_evtDisplayBookName()
{
    inHandler("QV_DeveloperTreeOCX1_evtDisplayBookName"_L1,
              [this] { ctlGlobalsTab1->setProjectName(QV_DeveloperTreeOCX1->ProjectName()); });
}

void frmMainUI::QV_DeveloperTreeOCX1_evtGlobalPageName()
{
    inHandler("QV_DeveloperTreeOCX1_evtGlobalPageName"_L1, [this] {
        ctlGlobalsTab1->setProjectName(QV_DeveloperTreeOCX1->ProjectName());
        ctlGlobalsTab1->setGlobalPageName(QV_DeveloperTreeOCX1->GlobalPageName());
        ctlBooksTab1->setBookName(QV_DeveloperTreeOCX1->BookName());
        selectTab(GlobalsTab);
        showEditor(GlobalsTab);
    });
}

void frmMainUI::QV_DeveloperTreeOCX1_evtQVTreeQuickNavInfo(QString project, QString view,
                                                           QString group, QString topic,
                                                           QString category, int level)
{
    inHandler("QV_DeveloperTreeOCX1_evtQVTreeQuickNavInfo"_L1, [&] {
        ctlQuickNav1->LoadQuickNavInfo(project, view, group, topic, category, level);
        if (!category.isEmpty() && level == 4)
            ctlQuickNav1->SelectQuickNavCategory(category);
        else
            ctlQuickNav1->ResetQuickNavView();
    });
}

void frmMainUI::ctlGlobalsTab1_OnCategoryDeletion()
{
    inHandler("ctlGlobalsTab1_OnCategoryDeletion"_L1, [this] { ctlBooksTab1->setBookName({}); });
}

void frmMainUI::ctlGlobalsTab1_OnCategoryAddition()
{
    inHandler("ctlGlobalsTab1_OnCategoryAddition"_L1, [this] { ctlBooksTab1->setBookName({}); });
}

void frmMainUI::ctlGlobalsTab1_OnRefreshTree()
{
    inHandler("ctlGlobalsTab1_OnRefreshTree"_L1, [this] { QV_DeveloperTreeOCX1->RefreshTree(); });
}

void frmMainUI::ctlGlobalsTab1_OnprojectNameChange()
{
    inHandler("ctlGlobalsTab1_OnprojectNameChange"_L1, [this] {
        QString &name = m_program.session.projectName;
        const QString before = std::exchange(name, ctlGlobalsTab1->ProjectName());
        RecentPlaces(m_program.session.serverPath).renamed(before, name);
        QV_DeveloperTreeOCX1->setProjectName(name);
        ctlBooksTab1->setProjectName(name);
        ctlQuickNav1->setProjectName(name);
        m_buildWindow().ctlBuildTab1().setProjectName(name);
        ctlGlobalsTab1->setProjectName(name);
        say(tr("The project is now called %1.").arg(name));
    });
}

void frmMainUI::ctlGlobalsTab1_OnAddGlobalPage(bool changed)
{
    inHandler("ctlGlobalsTab1_OnAddGlobalPage"_L1, [&] {
        m_program.session.projectName = ctlGlobalsTab1->ProjectName();
        if (changed)
            noteChange(m_program.session.globalsChanged);
    });
}

void frmMainUI::ctlGlobalsTab1_OnAdditionQNCategory(bool changed)
{
    inHandler("ctlGlobalsTab1_OnAdditionQNCategory"_L1, [&] {
        if (changed)
            noteChange(m_program.session.globalsChanged);
    });
}

void frmMainUI::ctlBooksTab1_OnAddImportFiles(bool changed)
{
    inBooksHandler("ctlBooksTab1_OnAddImportFiles"_L1, [&] {
        m_program.session.projectName = ctlBooksTab1->ProjectName();
        if (changed)
            noteChange(m_program.session.booksChanged);
    });
}

void frmMainUI::ctlBooksTab1_OnAddSourceFiles(bool changed)
{
    inBooksHandler("ctlBooksTab1_OnAddSourceFiles"_L1, [&] {
        m_program.session.projectName = ctlBooksTab1->ProjectName();
        if (changed)
            noteChange(m_program.session.booksChanged);
    });
}

void frmMainUI::ctlBooksTab1_OnDeleteBook(bool changed)
{
    inBooksHandler("ctlBooksTab1_OnDeleteBook"_L1, [&] {
        if (changed)
            noteChange(m_program.session.booksChanged);
    });
}

void frmMainUI::ctlBooksTab1_pagesChanged(bool changed)
{
    inBooksHandler("ctlBooksTab1_pagesChanged"_L1, [&] {
        if (changed)
            noteChange(m_program.session.booksChanged);
    });
}

void frmMainUI::ctlQuickNav1_evtRefreshTree(bool changed)
{
    inHandler("ctlQuickNav1_evtRefreshTree"_L1, [&] {
        if (changed)
            noteChange(m_program.session.quickNavChanged);
    });
}

void frmMainUI::ctlQuickNav1_evtOnDeletionofQuickNavInfo()
{
    inHandler("ctlQuickNav1_evtOnDeletionofQuickNavInfo"_L1,
              [this] { QV_DeveloperTreeOCX1->DeleteQuickNavInfo(); });
}

void frmMainUI::SSTab1_Click(int tab)
{
    const auto shape = [](const QvError &error) {
        return withTag(error, u"QV_DeveloperUI-FrmMainui::SSTab1_Click"_s);
    };
    trapped(shape, [&] { showEditor(tab); });
}

void frmMainUI::selectTab(int tab)
{
    ui->SSTab1->setCurrentIndex(tab);
}

/// Shows the editor of that tab and hides the others.
void frmMainUI::showEditor(int tab)
{
    ctlGlobalsTab1->setVisible(false);
    ctlBooksTab1->setVisible(false);
    ctlQuickNav1->setVisible(false);
    if (tab == GlobalsTab)
        ctlGlobalsTab1->setVisible(true);
    else if (tab == BooksTab)
        ctlBooksTab1->setVisible(true);
    else if (tab == QuickNavTab)
        ctlQuickNav1->setVisible(true);
}

/// A file (path relative to the project folder) and a line of it; 0 for the file as a whole. Files
/// of text that no editor here shows open in the system's text viewer.
void frmMainUI::showPlace(const QString &file, int line)
{
    inHandler("showPlace"_L1, [&] {
        const auto path = insideOf(m_project.folder(), file);
        if (path && isPageName(file))
            showPage(file, line);
        else if (path && isTextName(file))
            m_program.processes.openText(*path);
        else
            m_program.messages.show({tr("No editor here shows %1.").arg(file)});
    });
}

void frmMainUI::showPage(const QString &file, int line)
{
    const QByteArray bytes = m_program.files.readFile(m_project.folder() + file);
    const QString page = decodePage(bytes, m_program.session.projectLanguage).text;
    m_program.navigator.show(Form::MainUI);
    ctlBooksTab1->showPlace(file, startOfLine(page, line), 0);
}

/// Marks a kind of change that no build has taken in yet.
void frmMainUI::noteChange(bool &flag)
{
    flag = true;
    clearLights();
}

// All derived data must be made again.
void frmMainUI::clearLights()
{
    StatusIndicators(m_program.session, m_program.files, m_program.currentProject)
        .UpdateStatusXml(neutralColour);
    m_buildWindow().ctlBuildTab1().RefreshStatus(u"MainUI"_s);
}

void frmMainUI::inBooksHandler(QLatin1StringView handler, const std::function<void()> &body)
{
    const auto shape = [&](const QvError &error) {
        return withTag(error, u"QV_Developer-frmMainUI::"_s + handler);
    };
    trapped(shape, body);
}
