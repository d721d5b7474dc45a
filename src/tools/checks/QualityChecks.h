#pragma once

#include "platform/FileSystem.h"
#include "platform/Progress.h"
#include "tools/build/BuildInput.h"
#include "tools/build/BuildRun.h"
#include "tools/build/ScannedPages.h"

class LinkCheck;

/// Looks a project's pages, books and files over and writes the findings: "<project>_QA_Log.txt"
/// inside the project folder and "QV_QAReport.xml", which windows read. Findings that the author
/// accepted ("QV_QABaseline.xml") count as known; kinds of findings that are switched off there are
/// left out. The summary begins with the counts: new, known, fixed since the last run; the result
/// lists the new ones. Raises 75 for a baseline that cannot be read: what an author accepted is not
/// told as new.
ToolReport checkQuality(FileSystem &files, const BuildInput &input, const ScannedPages &pages,
                        const LinkCheck &check, CheckLevel level, const Progress &progress);
