#include "WindowNavigator.h"

#include "controls/ctlBuildTab.h"
#include "dialogs/ProjectOpening.h"
#include "dialogs/frmContinueDeleteProject.h"
#include "dialogs/frmMergeProjects.h"
#include "dialogs/frmRankBookSet.h"
#include "dialogs/frmSelPrjType.h"
#include "dialogs/frmSelPrjTypetoAdd.h"
#include "reports/frmIBLReport.h"
#include "startup/StartUp.h"
#include "startup/frmOrvantisVRXSplashScreen.h"
#include "workspace/frmBuild.h"
#include "workspace/frmMainUI.h"

#include <QApplication>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool closeSplash()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *const window : windows) {
        if (qobject_cast<frmOrvantisVRXSplashScreen *>(window))
            window->close();
    }
    return true;
}

/// The continue/delete dialog is one window under two names.
Form kindOf(Form form)
{
    return form == Form::DeleteProject ? Form::ContinueProject : form;
}

void bringHalfForward(FormWindow &window, Form form)
{
    using Half = frmContinueDeleteProject::Half;
    static_cast<frmContinueDeleteProject &>(window).showHalf(
        form == Form::ContinueProject ? Half::Continue : Half::Delete);
}

} // namespace

WindowNavigator::WindowNavigator(Program &program)
    : m_program(program)
{
}

WindowNavigator::~WindowNavigator()
{
    // Windows that have closed go too, before the world they look at.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    for (const auto &[form, window] : m_windows)
        delete window;
}

void WindowNavigator::show(Form form)
{
    if (form == Form::SplashScreen) {
        showSplashScreen(m_program);
        return;
    }
    FormWindow &window = touch(form);
    if (form == Form::ContinueProject || form == Form::DeleteProject)
        bringHalfForward(window, form);
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
}

void WindowNavigator::loadform()
{
    static_cast<frmSelPrjType &>(touch(Form::SelPrjType)).loadform();
}

bool WindowNavigator::unload(Form form)
{
    if (form == Form::SplashScreen)
        return closeSplash();
    FormWindow *const open = window(form);
    return open == nullptr || open->close();
}

void WindowNavigator::openProject(const QString &name)
{
    const CatalogueEntry project = projectToContinue(m_program, name);
    if (!unload(Form::MainUI))
        return;
    unload(Form::Build);
    unload(Form::MergeProjects);
    const auto backToTheLauncher = [this](const QvError &error) {
        show(Form::SelPrjType);
        throw error;
    };
    trap(backToTheLauncher, [&] {
        continueProject(m_program, project);
        show(Form::MainUI);
    });
}

void WindowNavigator::handOver(const QString &projectName, const QString &projectLanguage)
{
    mainWindow().setProjectName(projectName);
    ctlBuildTab &build = buildWindow().ctlBuildTab1();
    build.setProjectName(projectName);
    build.setProjectLanguage(projectLanguage);
}

FormWindow *WindowNavigator::window(Form form) const
{
    const auto found = m_windows.find(kindOf(form));
    return found == m_windows.end() ? nullptr : found->second;
}

FormWindow &WindowNavigator::touch(Form form)
{
    if (FormWindow *const there = window(form))
        return *there;
    const Form kind = kindOf(form);
    FormWindow *const made = make(kind);
    m_windows.emplace(kind, made);
    connect(made, &FormWindow::unloaded, this, [this, kind] {
        m_windows.erase(kind);
        // Queued: what closed the window may go on to open another.
        QMetaObject::invokeMethod(this, &WindowNavigator::endAfterLastWindow, Qt::QueuedConnection);
    });
    return *made;
}

FormWindow *WindowNavigator::make(Form form)
{
    switch (form) {
    case Form::SelPrjType:
        return new frmSelPrjType(m_program);
    case Form::SelPrjTypetoAdd:
        return new frmSelPrjTypetoAdd(m_program);
    case Form::ContinueProject:
    case Form::DeleteProject:
        return new frmContinueDeleteProject(m_program);
    case Form::MergeProjects:
        return new frmMergeProjects(m_program);
    case Form::RankBookSet:
        return new frmRankBookSet(m_program);
    case Form::IBLReport:
        return new frmIBLReport(m_program);
    case Form::MainUI:
        return new frmMainUI(m_program, [this]() -> frmBuild & { return buildWindow(); });
    case Form::Build:
        return new frmBuild(m_program);
    case Form::SplashScreen: // is no window of the work, see show
        break;
    }
    throw QvError(InvalidCall, {}, u"There is no such window"_s);
}

frmMainUI &WindowNavigator::mainWindow()
{
    return static_cast<frmMainUI &>(touch(Form::MainUI));
}

frmBuild &WindowNavigator::buildWindow()
{
    return static_cast<frmBuild &>(touch(Form::Build));
}

void WindowNavigator::endAfterLastWindow()
{
    const bool anyLoaded = std::any_of(m_windows.cbegin(), m_windows.cend(),
                                       [](const auto &entry) { return entry.second->isLoaded(); });
    if (!anyLoaded)
        QCoreApplication::exit();
}

FormWindow *WindowNavigator::frontWindow() const
{
    FormWindow *front = nullptr;
    for (const auto &[form, window] : m_windows) {
        if (window->isActiveWindow())
            return window;
        if (window->isVisible())
            front = window;
    }
    return front;
}

void WindowNavigator::bringToFront()
{
    if (FormWindow *const front = frontWindow()) {
        front->setWindowState((front->windowState() & ~Qt::WindowMinimized) | Qt::WindowMaximized);
        front->raise();
        front->activateWindow();
    }
    if (QWidget *const question = QApplication::activeModalWidget()) {
        question->raise();
        question->activateWindow();
    }
}

void WindowNavigator::closeFront()
{
    // What is open in front of a window, a question or long work, needs the window until it ends.
    QWidget *const question = QApplication::activeModalWidget();
    if (QWidget *const front = question ? question : frontWindow())
        front->close();
}
