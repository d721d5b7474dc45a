// Makes the adapters and the windows' world, then runs the program.
#include "DesktopWorld.h"
#include "WindowNavigator.h"
#include "platform/QvError.h"
#include "startup/StartUp.h"

#include <QApplication>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr auto programClass = "QVDeveloper"_L1;

/// The program names the navigator, which shows the program's windows; it goes first, with them.
struct World
{
    explicit World(const SingleInstance &instance)
        : base(instance, navigator, navigator)
    {
    }

    DesktopWorld base;
    WindowNavigator navigator{base.program};
};

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
    setUpApplication(u"developer"_s, "app"_L1);
    QApplication::setQuitOnLastWindowClosed(false);
    const std::unique_ptr<World> world = makeWorld(instance);
    if (!world)
        return 1;

    const WindowAnnouncer announcer(programClass, programTitle);
    WindowNavigator &navigator = world->navigator;
    QObject::connect(&announcer, &WindowAnnouncer::raiseRequested, &navigator,
                     &WindowNavigator::bringToFront);
    QObject::connect(&announcer, &WindowAnnouncer::closeRequested, &navigator,
                     &WindowNavigator::closeFront);
    return Main(world->base.program, QApplication::arguments().sliced(1)) ? QApplication::exec()
                                                                          : 0;
}
