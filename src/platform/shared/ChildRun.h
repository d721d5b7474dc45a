#pragma once

#include "platform/Processes.h"

/// Runs a program by its native path, as `Processes::run` says. Raises 70 when it cannot be
/// started.
ProcessEnd runChild(const QString &program, const QStringList &arguments,
                    const ProcessLimits &limits, const std::stop_token &stop,
                    const std::function<void(const QByteArray &line)> &line);

/// Starts a program by its native path and does not wait. Raises 70 when it cannot be started.
void startDetached(const QString &program, const QStringList &arguments);
