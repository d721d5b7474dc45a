#include "qvdev/ConsoleProgram.h"

#include "platform/QvError.h"
#include "qvdev/ConsoleWorld.h"
#include "qvdev/Options.h"
#include "tools/rename/ProjectRename.h"

#include <memory>

using namespace Qt::StringLiterals;

namespace {

/// Where there is no world yet.
void refuse(const Options &options, const QString &reason, const QString &help = {})
{
    ProgressLine none;
    ConsoleMessages(none).print((reason + u'\n' + help).trimmed());
    Output(options.isJson(), none).refusal(reason);
}

int explain(const Options &options)
{
    if (!options.problem().isEmpty()) {
        refuse(options, options.problem(), options.help());
        return WrongUse;
    }
    ProgressLine none;
    Output(false, none).bytes(options.help().toUtf8());
    return Done;
}

/// What killed programs left of a rename is finished at every start.
void finishRenamesNow(ConsoleWorld &world)
{
    trap([](const QvError &) {}, // failing to look harms nobody
         [&] {
             for (const QString &problem : finishRenames(world.program))
                 world.messages.print(problem);
         });
}

int runCommand(ConsoleWorld &world, const Options &options)
{
    if (options.isYes())
        world.messages.allowYes();
    world.findServer(options.server());
    finishRenamesNow(world);
    const ExitStatus status = options.command()->run(world, options.call());
    if (!world.output.wasWritten())
        throw QvError(PathFileAccess, {}, u"Standard output cannot be written"_s);
    return world.messages.hasRefused() ? Refused : status;
}

/// Shared procedures put the number in front of what they raise again.
QString reasonOf(const QvError &error)
{
    const QString number = QString::number(error.number()) + u": "_s;
    QString reason = error.description();
    while (reason.startsWith(number))
        reason.remove(0, number.size());
    return reason;
}

int runSafely(ConsoleWorld &world, const Options &options)
{
    int status = Refused;
    const auto say = [&](const QvError &error) { world.messages.print(reasonOf(error)); };
    try {
        trap(say, [&] { status = runCommand(world, options); });
    } catch (const Unwinding &) {
        if (world.isStopped())
            world.messages.print(u"Stopped."_s);
    }
    world.progressLine.clear();
    if (status == Refused)
        world.output.refusal(world.messages.printed());
    return status;
}

} // namespace

int runProgram(const QList<Command> &commands, const QStringList &words)
{
    const Options options(commands, words);
    if (!options.problem().isEmpty() || !options.help().isEmpty())
        return explain(options);

    std::unique_ptr<ConsoleWorld> world;
    trap([&](const QvError &error) { refuse(options, error.description()); },
         [&] { world = std::make_unique<ConsoleWorld>(options.isJson()); });
    return world ? runSafely(*world, options) : Refused;
}
