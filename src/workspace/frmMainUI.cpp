#include "workspace/frmMainUI.h"

#include "controls/QV_DeveloperTreeOCX.h"
#include "controls/Resizer.h"
#include "controls/ctlBooksTab.h"
#include "controls/ctlGlobalsTab.h"
#include "controls/ctlQuickNav.h"
#include "platform/Messages.h"
#include "resources/Texts.h"
#include "startup/ExternalPrograms.h"
#include "startup/Session.h"
#include "ui_frmMainUI.h"

using namespace Qt::StringLiterals;

frmMainUI::frmMainUI(Program &program, std::function<frmBuild &()> buildWindow, QWidget *parent)
    : FormWindow(program, parent)
    , ui(std::make_unique<Ui::frmMainUI>())
    , m_buildWindow(std::move(buildWindow))
    , m_project(program)
    , QV_DeveloperTreeOCX1(new QV_DeveloperTreeOCX(m_project, this))
    , ctlGlobalsTab1(new ctlGlobalsTab(m_project, this))
    , ctlBooksTab1(new ctlBooksTab(program, m_project, this))
    , ctlQuickNav1(new ctlQuickNav(m_project, this))
{
    ui->setupUi(this);
    hostControls();
    connectMenus();
    connectEdit();
    new Resizer(u"Resizer1"_s, this);
    new Resizer(u"Resizer2"_s, ui->splWorkspace);
}

// The controls look at the project session until they are gone.
frmMainUI::~frmMainUI()
{
    qDeleteAll(findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly));
}

void frmMainUI::setProjectName(const QString &name)
{
    QV_DeveloperTreeOCX1->setProjectName(name);
    ctlBooksTab1->setProjectName(name);
    ctlGlobalsTab1->setProjectName(name);
    ctlQuickNav1->setProjectName(name);
}

void frmMainUI::AssignProjectName()
{
    QV_DeveloperTreeOCX1->setProjectName(m_program.session.projectName);
    QV_DeveloperTreeOCX1->RefreshTree();
}

void frmMainUI::Form_Load()
{
    inHandler("Form_Load"_L1, [this] {
        mbQuietClose = false;
        m_switchingProject = false;
        setWindowTitle(text(Text::WindowTitle));
        ui->cmdBuild->setText(text(Text::Build));
        ui->cmdPreview->setText(text(Text::Preview));
        AssignProjectName();
        m_program.navigator.unload(Form::ContinueProject);
        selectTab(0);
        showEditor(0);
        show();
        QV_DeveloperTreeOCX1->setFocus();
        say(tr("Project %1 is open.").arg(m_program.session.projectName));
    });
}

void frmMainUI::Form_Unload(bool &cancel)
{
    inHandler("Form_Unload"_L1, [&] {
        cancel = true; // also when page text cannot be saved: nothing is lost
        if (ctlBooksTab1->mayLeave() && ctlGlobalsTab1->mayLeave() && mayClose())
            cancel = !closeCompanions();
    });
}

bool frmMainUI::mayClose()
{
    const Session &session = m_program.session;
    if (session.hasUnbuiltChanges())
        m_program.messages.show({text(Text::NotBuilt)});
    if (mbQuietClose || session.closeWithoutAsking)
        return true;
    return saysYes(text(m_switchingProject ? Text::CloseProject : Text::CloseProgram));
}

// A quiet close leaves the others alone. A build that the author lets run keeps this window open.
bool frmMainUI::closeCompanions()
{
    if (mbQuietClose || m_program.session.closeWithoutAsking)
        return true;
    CheckIndexManagerApp(m_program);
    if (!m_program.navigator.unload(Form::Build))
        return false;
    m_program.navigator.unload(Form::MergeProjects);
    return true;
}

void frmMainUI::mousePressEvent(QMouseEvent *event)
{
    FormWindow::mousePressEvent(event);
    Form_Click();
}

void frmMainUI::Form_Click()
{
    inHandler("Form_Click"_L1, [this] { m_program.navigator.unload(Form::SplashScreen); });
}

void frmMainUI::say(const QString &whatWasDone)
{
    ui->stbState->showMessage(whatWasDone);
}

void frmMainUI::inHandler(QLatin1StringView handler, const std::function<void()> &body)
{
    const auto shape = [&](const QvError &error) {
        return inProcedureWithReason(error, handler, u"frmMainUI"_s);
    };
    trapped(shape, body);
}
