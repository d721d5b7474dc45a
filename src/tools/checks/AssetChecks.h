#pragma once

#include "tools/build/ScannedPages.h"
#include "tools/checks/FindingList.h"

class LinkCheck;

/// Files in the folders of books and global pages that are packed though nothing uses them.
void checkUnusedFiles(const BuildInput &input, const ScannedPages &pages, const LinkCheck &links,
                      FindingList &findings);
