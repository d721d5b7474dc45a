#include "DesktopWorld.h"

#include "platform/QvError.h"
#include "platform/widgets/SystemLook.h"
#include "resources/Icons.h"

#include <QApplication>
#include <QSettings>

using namespace Qt::StringLiterals;

namespace {

[[noreturn]] void raiseElsewhere()
{
    throw QvError(InvalidCall, {}, u"This window belongs to QV Developer."_s);
}

} // namespace

void setUpApplication(const QString &name, QLatin1StringView iconName)
{
    QApplication::setOrganizationName(u"quovane"_s);
    QApplication::setApplicationName(name);
    QApplication::setWindowIcon(icon(iconName));
    setSystemLook();
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settingsFolders().user);
}

DesktopWorld::DesktopWorld(const SingleInstance &instance, Navigator &navigator,
                           CurrentProject &currentProject)
    : windows(instance)
    , program{session,     files,  registry, processes, windows,        clock,    messages,
              fileDialogs, locale, ending,   navigator, currentProject, parts.all}
{
}

void NoAuthoringWindows::show(Form)
{
    raiseElsewhere();
}

void NoAuthoringWindows::loadform()
{
    raiseElsewhere();
}

bool NoAuthoringWindows::unload(Form)
{
    raiseElsewhere();
}

void NoAuthoringWindows::openProject(const QString &)
{
    raiseElsewhere();
}

void NoAuthoringWindows::handOver(const QString &, const QString &)
{
    raiseElsewhere();
}
