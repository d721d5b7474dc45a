// A second program for the tests: announces a window and says on standard output what is asked of
// it. Called as QVDeveloper it behaves as a start of the product does.
#include "components/WindowHelperComponent.h"
#include "platform/portable/SingleInstance.h"
#include "platform/portable/SocketWindows.h"
#include "platform/portable/WindowAnnouncer.h"

#include <QCoreApplication>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

void say(const QString &line)
{
    std::puts(line.toUtf8().constData());
    std::fflush(stdout);
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const SingleInstance instance(arguments[1].toStdString());
    if (instance.previousInstance()) {
        SocketWindows windows(instance);
        WindowHelperComponent(windows).maximizeWindow(arguments[2]);
        say(u"second"_s);
        return 0;
    }
    const WindowAnnouncer window(arguments[1], arguments[2]);
    QObject::connect(
        &window, &WindowAnnouncer::raiseRequested,
        [](const QString &kind, const QString &topic) { say(u"raise "_s + kind + u'|' + topic); });
    QObject::connect(&window, &WindowAnnouncer::closeRequested, [] {
        say(u"close"_s);
        QCoreApplication::quit();
    });
    say(window.isListening() ? u"ready"_s : u"no socket"_s);
    return QCoreApplication::exec();
}
