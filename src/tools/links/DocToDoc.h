#pragma once

#include "platform/FileSystem.h"
#include "platform/Progress.h"
#include "tools/build/BuildInput.h"
#include "tools/build/ScannedPages.h"

class LinkCheck;

/// Document-to-document linking: writes "DocToDoc\DocLinks.xml", the links between the pages of the
/// project with what became of them, "QV_LinkID.xml", what the project publishes for and asks of
/// other projects, and "DocToDoc_Log.txt". A link-ID file that cannot be read is never overwritten:
/// the run fails and says so.
ToolReport linkDocuments(FileSystem &files, const BuildInput &input, const ScannedPages &pages,
                         const LinkCheck &check, const Progress &progress);
