#pragma once

#include "platform/FileSystem.h"
#include "tools/build/ScannedPages.h"
#include "tools/checks/FindingList.h"

/// Whether the status lights tell the truth about the tools' data, and whether the packed copy is
/// as new as the pages.
void checkData(FileSystem &files, const BuildInput &input, const ScannedPages &pages,
               FindingList &findings);
