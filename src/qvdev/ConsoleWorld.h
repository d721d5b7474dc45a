#pragma once

#include "ProductComponents.h"
#include "controls/build/BuiltProject.h"
#include "platform/Progress.h"
#include "platform/native/NativePlatform.h"
#include "qvdev/ConsoleMessages.h"
#include "qvdev/ConsoleSettings.h"
#include "qvdev/NoWindows.h"
#include "qvdev/Output.h"
#include "qvdev/ProgressLine.h"
#include "startup/Program.h"
#include "startup/Session.h"

/// The world of the command line: the machine's own files, settings and clock, messages as lines.
struct ConsoleWorld final
{
    explicit ConsoleWorld(bool asJson);

    /// Takes the server that the call names (a native path), else the one of the settings. Raises 5
    /// when there is none, 76 when it holds no Docs.
    void findServer(const QString &native);

    /// The product's form of a native path, which may be relative to the current folder.
    [[nodiscard]] QString productPath(const QString &native);
    /// The catalogue's entry of that name. Raises 5 when there is none.
    [[nodiscard]] CatalogueEntry project(const QString &name);
    /// Raises 5 when a tool must run or failed: the project may not be released then.
    void requireBuilt(const BuiltProject &built);
    [[nodiscard]] ProjectCatalogue catalogue() { return {session, files}; }
    /// Long work shows how far it is, and stops at Ctrl+C.
    [[nodiscard]] Progress progress();
    [[nodiscard]] bool isStopped() const { return stopSignals.token().stop_requested(); }

    StopSignals stopSignals;
    ProgressLine progressLine;
    Output output;
    Session session;
    NativeFiles files{drivesFolder()};
    ConsoleSettings settings;
    NativeProcesses processes{files};
    NoWindows windows;
    SystemClock clock;
    ConsoleMessages messages{progressLine};
    NativeLocale locale;
    ProgramEndNow ending;
    ProductComponents parts{session, settings, windows, files, processes, messages};
    Program program{session, files,  settings, processes, windows, clock,    messages,
                    windows, locale, ending,   windows,   windows, parts.all};
};
