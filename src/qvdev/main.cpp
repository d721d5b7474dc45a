// The command line: what the windows do with projects, for scripts. It calls the windows' own
// classes and decides nothing itself.
#include "platform/QvError.h"
#include "qvdev/ConsoleWorld.h"
#include "qvdev/Options.h"
#include "tools/rename/ProjectRename.h"

#include <QCoreApplication>

#include <cstdio>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

void print(FILE *stream, const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stream);
}

int explain(const Options &options)
{
    const bool isWrong = !options.problem().isEmpty();
    if (isWrong)
        print(stderr, options.problem() + u'\n');
    print(isWrong ? stderr : stdout, options.help());
    return isWrong ? WrongUse : Done;
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

int runSafely(ConsoleWorld &world, const Options &options)
{
    int status = Refused;
    const auto say = [&](const QvError &error) { world.messages.print(error.description()); };
    try {
        trap(say, [&] { status = runCommand(world, options); });
    } catch (const Unwinding &) {
        if (world.isStopped())
            world.messages.print(u"Stopped."_s);
    }
    world.progressLine.clear();
    return status;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QCoreApplication::setOrganizationName(u"quovane"_s);
    QCoreApplication::setApplicationName(u"qvdev"_s);
    QCoreApplication::setApplicationVersion(QStringLiteral(QVDEV_VERSION));

    const Options options(QCoreApplication::arguments().sliced(1));
    if (!options.problem().isEmpty() || !options.help().isEmpty())
        return explain(options);

    std::unique_ptr<ConsoleWorld> world;
    trap([](const QvError &error) { print(stderr, error.description() + u'\n'); },
         [&] { world = std::make_unique<ConsoleWorld>(options.isJson()); });
    return world ? runSafely(*world, options) : Refused;
}
