#pragma once

#include "platform/Progress.h"
#include "tools/build/ScannedPages.h"
#include "tools/links/LinkCheck.h"

#include <QByteArray>

/// The bytes of "DocLinks.xml": for each page its links to other pages of the project, each once,
/// in the order of the page, with what is wrong with those that are not good.
struct DocLinksFile
{
    QByteArray bytes;
    int links = 0;
};
DocLinksFile docLinksFile(const ScannedPages &pages, const LinkCheck &check,
                          const Progress &progress);
