#pragma once

#include "startup/Errors.h"
#include "startup/Program.h"

#include <QString>

/// The topic path that the launcher, the wizard and most dialogs open.
inline constexpr QLatin1StringView whatToDoTopic{"QVT@qv@qvdev_ug@qv@What do you want to do"};

/// Shows help: hands the request to a running viewer, or starts "<client bin path>StartApp.exe".
void OpenHelpTopic(Program &program, const QString &dynCall, const QString &dynCallInfo);

/// Offers to close a running index manager.
void CheckIndexManagerApp(Program &program);

/// Starts "<client folder>Bin\QV_IBLIndexMgr.exe" and does not wait. Raises 53 when it is absent.
void startIndexManager(Program &program);

/// The message for a failure of that: "Error(<number>) in procedure mnuIndexManager_Click of Form
/// frmMainUI", with the description below it, from wherever the index manager is started.
Message indexManagerFailed(const QvError &error);
