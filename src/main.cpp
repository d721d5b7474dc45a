// Makes the adapters and the windows' world, then runs the program.
#include "ProductComponents.h"
#include "WindowNavigator.h"
#include "platform/QvError.h"
#include "platform/portable/DrivesFolder.h"
#include "platform/portable/IniRegistry.h"
#include "platform/portable/PortableFiles.h"
#include "platform/portable/PortableLocale.h"
#include "platform/portable/PortableProcesses.h"
#include "platform/portable/ProgramEndNow.h"
#include "platform/portable/SingleInstance.h"
#include "platform/portable/SocketWindows.h"
#include "platform/portable/SystemClock.h"
#include "platform/portable/WindowAnnouncer.h"
#include "platform/widgets/MarksStyle.h"
#include "platform/widgets/MessageBoxes.h"
#include "platform/widgets/NativeFileDialogs.h"
#include "resources/Icons.h"
#include "startup/Program.h"
#include "startup/Session.h"
#include "startup/StartUp.h"

#include <QApplication>
#include <QSettings>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr auto programClass = "QVDeveloper"_L1;

/// Everything the windows are handed. Each member uses only those above it, but for the program,
/// which names the navigator; the navigator goes first, with the windows.
struct World
{
    explicit World(const SingleInstance &instance)
        : windows(instance)
    {
    }

    Session session;
    PortableFiles files{drivesFolder()};
    IniRegistry registry;
    PortableProcesses processes{files};
    SocketWindows windows;
    SystemClock clock;
    MessageBoxes messages;
    NativeFileDialogs fileDialogs{files};
    PortableLocale locale;
    ProgramEndNow ending;

    ProductComponents parts{session, registry, windows, files, processes, messages};
    Program program{session,     files,  registry, processes, windows,   clock,    messages,
                    fileDialogs, locale, ending,   navigator, navigator, parts.all};
    WindowNavigator navigator{program};
};

void setUpApplication()
{
    QApplication::setOrganizationName(u"quovane"_s);
    QApplication::setApplicationName(u"developer"_s);
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setWindowIcon(icon("app"_L1));
    QApplication::setStyle(new MarksStyle);
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settingsFolders().user);
}

/// Nothing, and a message, when the folders that the environment names cannot be used.
std::unique_ptr<World> makeWorld(const SingleInstance &instance)
{
    const auto showError = [](const QvError &error) {
        MessageBoxes().show({u"QV Developer cannot start. "_s + error.description()});
    };
    return trap(showError, [&] { return std::make_unique<World>(instance); });
}

} // namespace

int main(int argc, char *argv[])
{
    // Before anything is made: the second start is over as soon as it knows that it is one.
    const SingleInstance instance(programClass.data());
    if (instance.previousInstance()) {
        SingleInstance::handOver(programClass.data(), programTitle.data());
        return 0;
    }

    const QApplication application(argc, argv);
    setUpApplication();
    const std::unique_ptr<World> world = makeWorld(instance);
    if (!world)
        return 1;

    const WindowAnnouncer announcer(programClass, programTitle);
    WindowNavigator &navigator = world->navigator;
    QObject::connect(&announcer, &WindowAnnouncer::raiseRequested, &navigator,
                     &WindowNavigator::bringToFront);
    QObject::connect(&announcer, &WindowAnnouncer::closeRequested, &navigator,
                     &WindowNavigator::closeFront);
    return Main(world->program, QApplication::arguments().sliced(1)) ? QApplication::exec() : 0;
}
