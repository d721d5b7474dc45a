#pragma once

#include "platform/Progress.h"
#include "startup/Program.h"
#include "tools/build/Finding.h"

#include <QDateTime>
#include <QString>
#include <QStringList>

/// How a set's link file stands to its pages.
enum class ScanState {
    Current,
    Stale,        ///< pages, or the list of them, changed after the linking tool ran
    NeverScanned, ///< there is no link file
    NoSet,        ///< its folder is not there, or cannot be read
};

struct SetScan
{
    ScanState state = ScanState::Current;
    QDateTime scanned = {}; ///< UTC; invalid when there is no link file
    QStringList newer = {}; ///< what changed since, relative to the set's folder
    QString problem = {};   ///< why it cannot be told
};

/// What can be told of a set without reading a page. Throws Unwinding when Stop was pressed.
SetScan scanStateOf(FileSystem &files, const QString &serverPath, const QString &set,
                    const Progress &progress = {});

/// Runs the linking tool over a set, and nothing else, and sets its status light. Raises as
/// `runBuild`; nothing is changed then.
ToolReport scanAgain(Program &program, const QString &set, const Progress &progress);
