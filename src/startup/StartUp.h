#pragma once

#include "startup/Program.h"

#include <QString>
#include <QStringList>

/// The window title by which a running instance is found.
inline constexpr QLatin1StringView programTitle{"Quovane Developer Pro"};

/// Program entry; `arguments` without the program's own name. Brings a running instance to the
/// front; or starts the index manager when the one argument is "IBL" in any case; or shows the
/// launcher. True when windows were opened and the event loop shall run.
bool Main(Program &program, const QStringList &arguments);

/// Opens the splash window and arms the 5-second mark.
void showSplashScreen(Program &program);

/// Waits until the splash has been up for 5 seconds or the "SplashScreen" value reads 1, closes it
/// and writes "0". With no splash open it only writes "0".
void unloadSplashScreen(Program &program);
