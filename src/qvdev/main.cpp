// The command line: what the windows do with projects, for scripts. It calls the windows' own
// classes and decides nothing itself.
#include "qvdev/ConsoleProgram.h"

#include <QCoreApplication>

#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// A file that took the number of a closed standard stream would get what is printed. Writing to
/// what stands there instead fails, as it should.
void fillClosedStreams()
{
    int stream = STDIN_FILENO;
    while (stream >= 0 && stream <= STDERR_FILENO)
        stream = ::open("/dev/null", O_RDONLY);
    if (stream >= 0)
        ::close(stream);
}

} // namespace

int main(int argc, char *argv[])
{
    fillClosedStreams();
    const QCoreApplication application(argc, argv);
    QCoreApplication::setOrganizationName(u"quovane"_s);
    QCoreApplication::setApplicationName(u"qvdev"_s);
    QCoreApplication::setApplicationVersion(QStringLiteral(QVDEV_VERSION));
    return runProgram(commands(), QCoreApplication::arguments().sliced(1));
}
