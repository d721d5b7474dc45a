#include "startup/StartUp.h"

#include "components/Components.h"
#include "components/RegistryAccess.h"
#include "components/WindowHelper.h"
#include "platform/Clock.h"
#include "platform/DesktopWindows.h"
#include "startup/Errors.h"
#include "startup/ExternalPrograms.h"
#include "startup/Navigator.h"
#include "startup/Session.h"
#include "startup/frmOrvantisVRXSplashScreen.h"

#include <QCoreApplication>
#include <QPointer>
#include <QThread>
#include <QWindow>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto splashValue = "SplashScreen"_L1;

struct Splash
{
    QPointer<frmOrvantisVRXSplashScreen> window; ///< null when none is open
    std::chrono::milliseconds endTime{0};
};

Splash &splash()
{
    static Splash shown;
    return shown;
}

void clearSplashFlag(Program &program)
{
    program.components.registryAccess.SetValueName(Hive::CurrentUser, RegistryKey::splash,
                                                   splashValue, u"0"_s);
}

// A value that cannot be read means that nobody has asked: the wait runs to its end.
bool splashMayClose(Program &program)
{
    bool asked = false;
    trap([](const QvError &) {},
         [&] {
             const QString value = program.components.registryAccess.vGetValueName(
                 Hive::CurrentUser, RegistryKey::splash, splashValue);
             asked = value.trimmed().toDouble() == 1;
         });
    return asked;
}

// Pictures are drawn, clicks wait.
void letWindowsPaint()
{
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    QThread::msleep(10);
}

void waitUntilOnScreen(Program &program)
{
    const auto patience = program.clock.monotonic() + 1s;
    while (splash().window && !splash().window->windowHandle()->isExposed()
           && program.clock.monotonic() < patience)
        letWindowsPaint();
    letWindowsPaint();
}

void openSplash(Program &program)
{
    if (!splash().window) {
        splash().window = new frmOrvantisVRXSplashScreen(program);
        QObject::connect(splash().window, &FormWindow::unloaded, [] { splash().window.clear(); });
    }
    splash().window->show();
    waitUntilOnScreen(program);
}

bool asksForIndexManager(const QStringList &arguments)
{
    return arguments.size() == 1 && arguments.first().compare("IBL"_L1, Qt::CaseInsensitive) == 0;
}

// What the main window's menu entry does, without the window.
void callIndexManager(Program &program)
{
    const auto showError = [&](const QvError &error) {
        program.messages.show(indexManagerFailed(error));
    };
    trap(showError, [&] { startIndexManager(program); });
}

} // namespace

bool Main(Program &program, const QStringList &arguments)
{
    const auto showError = [&](const QvError &error) {
        program.messages.show(withTag(error, u"QV_Developer-QVDeveloper::Main()"_s));
    };
    return trap(showError, [&] {
        if (program.windows.previousInstance()) {
            program.components.windowHelper.maximizeWindow(programTitle);
            return false;
        }
        if (asksForIndexManager(arguments)) {
            callIndexManager(program);
            return false;
        }
        program.navigator.show(Form::SelPrjType);
        return true;
    });
}

void showSplashScreen(Program &program)
{
    trap(reraise(program.session, u"QV_Developer-QVDeveloper::showSplashScreen()"_s), [&] {
        clearSplashFlag(program);
        openSplash(program);
        splash().endTime = program.clock.monotonic() + 5s;
    });
}

void unloadSplashScreen(Program &program)
{
    trap(reraise(program.session, u"QV_Developer-QVDeveloper::unloadSplashScreen()"_s), [&] {
        while (splash().window && program.clock.monotonic() <= splash().endTime
               && !splashMayClose(program))
            letWindowsPaint();
        if (splash().window)
            splash().window->close();
        clearSplashFlag(program);
    });
}
