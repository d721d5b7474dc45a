// The command line: what the windows do with projects, for scripts. It calls the windows' own
// classes and decides nothing itself.
#include "platform/shared/StandardStreams.h"
#include "qvdev/ConsoleProgram.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

int main(int argc, char *argv[])
{
    prepareStandardStreams();
    const QCoreApplication application(argc, argv);
    QCoreApplication::setOrganizationName(u"quovane"_s);
    QCoreApplication::setApplicationName(u"qvdev"_s);
    QCoreApplication::setApplicationVersion(QStringLiteral(QVDEV_VERSION));
    return runProgram(commands(), QCoreApplication::arguments().sliced(1));
}
