// The work of the windows as single commands, to be run from outside on any installation folder:
//   driver [--server DIR] [--date YYYY-MM-DD] COMMAND ARGUMENT...
// DIR and other folders are native paths; output is UTF-8 with the product's paths. Exit status:
// 0 done or read, 1 refused (the message is printed), 2 taken as empty, 64 wrong call.
// It calls the windows' own classes and decides nothing itself.

#include "driver/Commands.h"
#include "platform/Paths.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace {

int runCommand(Console &console, const QString &name, const QStringList &arguments)
{
    for (const Command &command : commands()) {
        if (command.name == name && arguments.size() >= command.arguments)
            return command.run(console, arguments);
    }
    printLine({u"usage: driver [--server DIR] [--date YYYY-MM-DD] COMMAND ARGUMENT..."_s});
    for (const Command &command : commands())
        printLine({u"  "_s + command.name + u' ' + command.usage});
    return 64;
}

/// Takes "--<name> VALUE" out of the arguments.
QString option(QStringList &arguments, const QString &name)
{
    const qsizetype at = arguments.indexOf(u"--"_s + name);
    if (at < 0 || at + 1 >= arguments.size())
        return {};
    arguments.removeAt(at);
    return arguments.takeAt(at);
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication app(argc, argv);
    QStringList arguments = QCoreApplication::arguments().sliced(1);
    const QString server = option(arguments, u"server"_s);
    const QString date = option(arguments, u"date"_s);

    Console console(u"/nonexistent"_s);
    if (!server.isEmpty())
        console.session.serverPath = withBackslash(console.files.productPath(server));
    if (!date.isEmpty())
        console.clock.time = QDateTime(QDate::fromString(date, Qt::ISODate), QTime(12, 0));
    if (arguments.isEmpty())
        return runCommand(console, {}, {});
    try {
        return runCommand(console, arguments.first(), arguments.sliced(1));
    } catch (const Unwinding &) {
        return 1;
    } catch (const CopyFailure &failure) {
        printLine({failure.targetFolder, failure.reason});
    } catch (...) {
        printLine({currentError().text()});
    }
    return 1;
}
