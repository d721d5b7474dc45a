#pragma once

#include "WindowNavigator.h"
#include "platform/Paths.h"
#include "support/TestProgram.h"

#include <QCoreApplication>

#include <cstdio>

/// Real files and the present time; all else is scripted, and messages are lines.
struct Console : ScriptedProgram
{
    explicit Console(const QString &drives)
        : ScriptedProgram(drives)
    {
        clock.time = QDateTime::currentDateTime();
        messages.echo = [](const QStringList &fields) {
            std::puts(qUtf8Printable(fields.join(u'\t')));
        };
    }
};

/// The program's windows over a real folder.
struct Windows
{
    Console console{QStringLiteral("/nonexistent")};
    Program program{console.session,  console.files,  console.registry, console.processes,
                    console.windows,  console.clock,  console.messages, console.dialogs,
                    console.locale,   console.ending, navigator,        navigator,
                    console.parts.all};
    WindowNavigator navigator{program};

    explicit Windows(const QString &server)
    {
        console.session.serverPath = withBackslash(console.files.productPath(server));
        console.parts.registryAccess.SetQVServer(console.session.serverPath);
        console.registry.setValue(Hive::LocalMachine, RegistryKey::product,
                                  QStringLiteral("Client"), QStringLiteral("C:\\"));
    }
};

/// A path below Docs.
inline QString below(const Windows &windows, const QString &name)
{
    return docsFolder(windows.console.session.serverPath) + name;
}

inline void number(const char *what, double value, const char *unit)
{
    std::printf("%-24s %10.3f %s\n", what, value, unit);
}

inline void settle()
{
    for (int round = 0; round < 3; ++round)
        QCoreApplication::processEvents();
}
