// The help viewer: shows a help topic, or hands it to the viewer that runs already.
#include "components/NameRules.h"
#include "components/RegistryAccessComponent.h"
#include "platform/QvError.h"
#include "platform/portable/DrivesFolder.h"
#include "platform/portable/IniRegistry.h"
#include "platform/portable/PortableFiles.h"
#include "platform/portable/SingleInstance.h"
#include "platform/portable/SocketWindows.h"
#include "platform/portable/WindowAnnouncer.h"
#include "platform/widgets/MarksStyle.h"
#include "platform/widgets/MessageBoxes.h"
#include "resources/Icons.h"
#include "viewer/ViewerColours.h"
#include "viewer/ViewerWindow.h"

#include <QApplication>
#include <QSettings>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr auto programClass = "StartApp"_L1;
constexpr auto contentRequest = "Content"_L1;

/// To the viewer that runs, or is just starting.
void handOver(const SingleInstance &instance, int argc, char *argv[])
{
    SingleInstance::handOver(programClass.data(), viewerCaption.data());
    if (argc > 1)
        SocketWindows(instance).raiseMaximized(viewerCaption, contentRequest,
                                               QString::fromUtf8(argv[1]));
}

void setUpApplication()
{
    QApplication::setOrganizationName(u"quovane"_s);
    QApplication::setApplicationName(u"viewer"_s);
    QApplication::setWindowIcon(icon("help"_L1));
    QApplication::setStyle(new MarksStyle);
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settingsFolders().user);
    ViewerColours::restore();
}

/// "" when none is set: the help is shown all the same.
QString serverPath()
{
    IniRegistry registry;
    const auto noServer = [](const QvError &) {};
    return trap(noServer, [&] { return RegistryAccessComponent(registry).GetQVServer(); });
}

int run()
{
    PortableFiles files{drivesFolder()};
    Session session;
    session.serverPath = serverPath();
    const QString help = findHelpFolder(files, qEnvironmentVariable("QUOVANE_HELP"),
                                        QApplication::applicationDirPath());
    MessageBoxes messages;
    const NameRules characters(messages);
    ViewerWorld world{session, files, characters, HelpPages(files, help)};
    ViewerWindow window(world);
    const WindowAnnouncer announcer(programClass, viewerCaption);
    QObject::connect(&announcer, &WindowAnnouncer::raiseRequested, &window,
                     &ViewerWindow::answerRequest);
    QObject::connect(&announcer, &WindowAnnouncer::closeRequested, &window, &QWidget::close);
    window.showTopic(QApplication::arguments().value(1));
    window.show();
    return QApplication::exec();
}

} // namespace

int main(int argc, char *argv[])
{
    // Before anything is made: the second start is over as soon as it knows that it is one.
    const SingleInstance instance(programClass.data());
    if (instance.previousInstance()) {
        handOver(instance, argc, argv);
        return 0;
    }

    const QApplication application(argc, argv);
    const auto cannotStart = [](const QvError &error) {
        MessageBoxes().show({u"The help viewer cannot start. "_s + error.description()});
    };
    const std::optional<int> status = trap(cannotStart, []() -> std::optional<int> {
        setUpApplication();
        return run();
    });
    return status.value_or(1);
}
