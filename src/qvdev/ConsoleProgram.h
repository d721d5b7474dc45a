#pragma once

#include "qvdev/Command.h"

/// Runs the one command of `commands` that `words`, those behind the program's own name, call, and
/// says what came of it. Returns the exit status; nothing is raised. The application's name and
/// version are those that the help shows.
int runProgram(const QList<Command> &commands, const QStringList &words);
