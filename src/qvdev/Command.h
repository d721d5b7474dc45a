#pragma once

#include <QCommandLineOption>
#include <QList>
#include <QString>
#include <QStringList>

class QCommandLineParser;
struct ConsoleWorld;

/// What the program tells the script that called it.
enum ExitStatus : int {
    Done = 0,
    Refused = 1,  ///< or failed, or stopped
    Findings = 2, ///< done, and there is something to look at
    WrongUse = 64
};

/// What one call gives.
struct Call
{
    QStringList arguments; ///< without options and the command's name
    const QCommandLineParser &options;
};

/// One command of the program. It works on the world and shows what came of it through the world's
/// output; what it raises is shown by main.
struct Command
{
    QString name;
    QString arguments; ///< as the usage line shows them
    int fewest, most;  ///< arguments; `most` below 0: any number
    QString summary;
    QList<QCommandLineOption> options;
    QStringList required; ///< of them
    ExitStatus (*run)(ConsoleWorld &world, const Call &call);
};

/// All commands in the order in which they are listed.
QList<Command> commands();

QList<Command> projectCommands();    ///< of the list of projects
QList<Command> newProjectCommands(); ///< that make projects
QList<Command> bookCommands();       ///< of the books of one project
QList<Command> buildCommands();      ///< that build, check and pack
QList<Command> reportCommands();     ///< of the links of all projects
