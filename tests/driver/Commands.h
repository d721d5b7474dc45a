#pragma once

#include "qvdev/Command.h"

// What the fault scripts need and qvdev does not offer: single steps of the windows' work.

QList<Command> installationCommands(); ///< reading files as the program does; the list, the lights
QList<Command> authorCommands();       ///< commands of an author on the books of a project
QList<Command> toolCommands();         ///< the tools of a build, one by one
