#pragma once

#include "driver/Console.h"
#include "projectfiles/ProjectCopy.h"

#include <functional>

/// One operation of the program as a command.
struct Command
{
    QString name;
    int arguments; ///< at least
    QString usage;
    std::function<int(Console &, const QStringList &)> run; ///< gives the exit status
};

QList<Command> commands();
QList<Command> projectCommands(); ///< of them: releasing, reopening, packing, deleting and merging
QList<Command> buildCommands();   ///< of them: the tools of a build
QList<Command> reportCommands();  ///< of them: the listings of the link report
