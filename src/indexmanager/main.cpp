// The index manager: makes the adapters and its one window, then runs the program.
#include "DesktopWorld.h"
#include "indexmanager/frmIndexManager.h"
#include "platform/QvError.h"
#include "resources/Texts.h"

#include <QApplication>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr auto instanceName = "QV_IBLIndexMgr";

struct World
{
    explicit World(const SingleInstance &instance)
        : base(instance, others, others)
    {
    }

    NoAuthoringWindows others;
    DesktopWorld base;
};

/// Nothing, and a message, when there is no installation to look at.
std::unique_ptr<World> makeWorld(const SingleInstance &instance)
{
    const auto showError = [](const QvError &error) {
        MessageBoxes().show(
            {u"The index manager does not know where the Quovane server is. Start QV Developer "
             "once, which asks for it."_s,
             Buttons::Ok, text(Text::IndexManagerCaption), MessageIcon::Information,
             error.description()});
    };
    return trap(showError, [&] {
        auto world = std::make_unique<World>(instance);
        world->base.session.serverPath = world->base.parts.registryAccess.GetQVServer();
        return world;
    });
}

} // namespace

int main(int argc, char *argv[])
{
    const SingleInstance instance(instanceName);
    const QString caption = text(Text::IndexManagerCaption);
    if (instance.previousInstance()) {
        SingleInstance::handOver(indexManagerWindowClass.data(), caption.toStdString());
        return 0;
    }

    const QApplication application(argc, argv);
    setUpApplication(u"indexmanager"_s, "app"_L1);
    const std::unique_ptr<World> world = makeWorld(instance);
    if (!world)
        return 1;

    auto *const window = new frmIndexManager(world->base.program);
    QObject::connect(window, &FormWindow::unloaded, qApp, &QCoreApplication::quit);
    const WindowAnnouncer announcer(indexManagerWindowClass, caption);
    QObject::connect(&announcer, &WindowAnnouncer::raiseRequested, window,
                     &frmIndexManager::bringToFront);
    QObject::connect(&announcer, &WindowAnnouncer::closeRequested, window,
                     &frmIndexManager::closeAsAsked);
    window->show();
    return QApplication::exec();
}
