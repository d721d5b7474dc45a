#pragma once

#include "tools/build/ScannedPages.h"
#include "tools/checks/FindingList.h"

class LinkCheck;

/// What is wrong in the pages and style sheets themselves: their links, their markup, and what they
/// load from outside.
void checkPages(const BuildInput &input, const ScannedPages &pages, const LinkCheck &links,
                FindingList &findings, const Progress &progress);
