#pragma once

#include "platform/FileSystem.h"
#include "platform/Progress.h"
#include "tools/build/BuildInput.h"
#include "tools/build/ScannedPages.h"

class PageAnchors;

/// Writes the flat index of the quick navigation, "QuickNav\QuickNav.xml", and
/// "QuickNav\QuickNav_Log.txt". Links whose page is not there are left out of the index; they, lost
/// anchors, what is empty, and how many pages no entry leads to are findings.
ToolReport writeQuickNavIndex(FileSystem &files, const BuildInput &input, const ScannedPages &pages,
                              const PageAnchors &anchors, const Progress &progress);
