#pragma once

#include <QString>

/// The folder below which "C:\" is "c" (a native path): the one that QUOVANE_DRIVES names, else
/// "<data home>/quovane/drives", on Windows none: it has drives of its own.
QString drivesFolder();
