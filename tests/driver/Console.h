#pragma once

#include "support/TestProgram.h"

#include <QTextStream>

#include <cstdio>

/// UTF-8 lines on standard output.
inline void printLine(const QStringList &fields)
{
    const QByteArray line = fields.join(u'\t').toUtf8() + '\n';
    std::fwrite(line.constData(), 1, static_cast<size_t>(line.size()), stdout);
}

/// Message boxes as lines; a question is answered as if closed.
class ConsoleMessages final : public Messages
{
public:
    Answer show(const Message &message) override
    {
        printLine({message.text, message.details});
        return message.buttons == Buttons::YesNo ? Answer::No : Answer::Cancel;
    }
    int choose(const Choice &choice) override
    {
        printLine({choice.text});
        return static_cast<int>(choice.answers.size()) - 1;
    }
};

/// A clock that stands at the date given by --date.
class FixedClock final : public Clock
{
public:
    QDateTime time = QDateTime::currentDateTime();
    QDateTime now() override { return time; }
    std::chrono::milliseconds monotonic() override { return std::chrono::milliseconds(0); }
};

/// The world of the driver: real files, everything else as small as it can be.
struct Console
{
    explicit Console(const QString &drivesFolder)
        : files(drivesFolder)
    {
    }

    PortableFiles files;
    Session session;
    MemoryRegistry registry;
    NotedProcesses processes;
    ScriptedWindows windows;
    FixedClock clock;
    ConsoleMessages messages;
    ScriptedDialogs dialogs;
    FixedLocale locale;
    NotedEnd ending;
    NotedNavigator navigator;
    NotedCurrentProject currentProject;

    ProductComponents parts{session, registry, windows, files, messages};
    Program program{session, files,  registry, processes, windows,        clock,    messages,
                    dialogs, locale, ending,   navigator, currentProject, parts.all};
};
