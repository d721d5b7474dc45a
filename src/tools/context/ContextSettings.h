#pragma once

#include "platform/FileSystem.h"
#include "platform/Progress.h"
#include "tools/build/BuildInput.h"
#include "tools/build/ScannedPages.h"

/// Writes the context map: which page a program shows that asks by number or symbolic name.
/// "DynamicHelp\Book_DynamicHelp.xml", and for the programs "ContextMap.h" and "ContextMap.csv"
/// beside it, all put in place together; "DynamicHelp\ContextSettings_Log.txt". An id that is not
/// usable (doubled, without a number, of a page that is not there) is a finding and is left out.
ToolReport writeContextSettings(FileSystem &files, const BuildInput &input,
                                const ScannedPages &pages, const Progress &progress);
