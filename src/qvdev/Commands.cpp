#include "qvdev/Command.h"

QList<Command> commands()
{
    return projectCommands() + newProjectCommands() + bookCommands() + buildCommands()
           + reportCommands();
}
