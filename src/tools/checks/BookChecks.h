#pragma once

#include "tools/build/ScannedPages.h"
#include "tools/checks/FindingList.h"

class LinkCheck;

/// Whether books, outlines and files agree: what the author's files name is there, each acronym and
/// page once, and every page is in an outline.
void checkBooks(const BuildInput &input, const ScannedPages &pages, const LinkCheck &links,
                FindingList &findings);
