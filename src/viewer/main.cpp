// The help viewer: shows a help topic, or hands it to the viewer that runs already.
#include "DesktopWorld.h"
#include "platform/QvError.h"
#include "viewer/ViewerColours.h"
#include "viewer/ViewerWindow.h"

#include <QApplication>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr auto programClass = "StartApp"_L1;
constexpr auto contentRequest = "Content"_L1;

/// A topic has blanks, and not everybody quotes it.
QString topicIn(const QStringList &arguments)
{
    return arguments.sliced(1).join(u' ');
}

/// To the viewer that runs, or is just starting.
void handOver(const SingleInstance &instance, int argc, char *argv[])
{
    SingleInstance::handOver(programClass.data(), viewerCaption.data());
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    if (argc > 1)
        NativeWindows(instance).raiseMaximized(viewerCaption, contentRequest, topicIn(arguments));
}

/// "" when none is set: the help is shown all the same.
QString serverPath(RegistryAccess &registry)
{
    const auto noServer = [](const QvError &) {};
    return trap(noServer, [&] { return registry.GetQVServer(); });
}

int run(const SingleInstance &instance)
{
    NoAuthoringWindows others;
    DesktopWorld base(instance, others, others);
    base.session.serverPath = serverPath(base.parts.registryAccess);
    const QString help = findHelpFolder(base.files, qEnvironmentVariable("QUOVANE_HELP"),
                                        QApplication::applicationDirPath());
    ViewerWorld world{base.session, base.files, base.parts.nameRules, HelpPages(base.files, help)};
    ViewerWindow window(world);
    const WindowAnnouncer announcer(programClass, viewerCaption);
    QObject::connect(&announcer, &WindowAnnouncer::raiseRequested, &window,
                     &ViewerWindow::answerRequest);
    QObject::connect(&announcer, &WindowAnnouncer::closeRequested, &window, &QWidget::close);
    window.showTopic(topicIn(QApplication::arguments()));
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
    const std::optional<int> status = trap(cannotStart, [&]() -> std::optional<int> {
        setUpApplication(u"viewer"_s, "help"_L1);
        ViewerColours::restore();
        return run(instance);
    });
    return status.value_or(1);
}
