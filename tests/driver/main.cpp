// Single steps of the windows' work, for the scripts that break things on purpose. It is qvdev with
// other commands: the same options, messages and exit statuses; for `read`, 2 is "taken as empty".
#include "driver/Commands.h"
#include "qvdev/ConsoleProgram.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(u"driver"_s);
    return runProgram(installationCommands() + authorCommands() + toolCommands(),
                      QCoreApplication::arguments().sliced(1));
}
