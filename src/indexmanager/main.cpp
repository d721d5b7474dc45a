// The index manager: makes the adapters and its one window, then runs the program.
#include "ProductComponents.h"
#include "indexmanager/frmIndexManager.h"
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
#include "resources/Texts.h"
#include "startup/CurrentProject.h"
#include "startup/Navigator.h"
#include "startup/Program.h"
#include "startup/Session.h"

#include <QApplication>
#include <QSettings>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr auto instanceName = "QV_IBLIndexMgr";

/// The windows of the authoring program are not in this one.
class NoOtherWindows final : public Navigator, public CurrentProject
{
public:
    void show(Form) override { raise(); }
    void loadform() override { raise(); }
    bool unload(Form) override { raise(); }
    void openProject(const QString &) override { raise(); }
    void handOver(const QString &, const QString &) override { raise(); }

private:
    [[noreturn]] static void raise()
    {
        throw QvError(InvalidCall, {}, u"This window belongs to QV Developer."_s);
    }
};

/// Everything the window is handed. Each member uses only those above it.
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
    NoOtherWindows others;

    ProductComponents parts{session, registry, windows, files, processes, messages};
    Program program{session,     files,  registry, processes, windows, clock,    messages,
                    fileDialogs, locale, ending,   others,    others,  parts.all};
};

void setUpApplication()
{
    QApplication::setOrganizationName(u"quovane"_s);
    QApplication::setApplicationName(u"indexmanager"_s);
    QApplication::setWindowIcon(icon("app"_L1));
    QApplication::setStyle(new MarksStyle);
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settingsFolders().user);
}

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
        world->session.serverPath = world->parts.registryAccess.GetQVServer();
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
    setUpApplication();
    const std::unique_ptr<World> world = makeWorld(instance);
    if (!world)
        return 1;

    auto *const window = new frmIndexManager(world->program);
    QObject::connect(window, &FormWindow::unloaded, qApp, &QCoreApplication::quit);
    const WindowAnnouncer announcer(indexManagerWindowClass, caption);
    QObject::connect(&announcer, &WindowAnnouncer::raiseRequested, window,
                     &frmIndexManager::bringToFront);
    QObject::connect(&announcer, &WindowAnnouncer::closeRequested, window,
                     &frmIndexManager::closeAsAsked);
    window->show();
    return QApplication::exec();
}
