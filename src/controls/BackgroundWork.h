#pragma once

#include "platform/Progress.h"
#include "startup/Program.h"

#include <QString>

#include <functional>

class QWidget;

/// Runs long work on a worker and returns when it has ended. Meanwhile the window takes no other
/// command; a box shows the progress and offers Stop, which its close box means too. `work` touches
/// no widget. False when the author stopped it; what it raises is raised here.
bool runInBackground(Program &program, QWidget *window, const QString &title,
                     const std::function<void(const Progress &)> &work);
