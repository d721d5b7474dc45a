#pragma once

#include "components/XmlCharacters.h"
#include "platform/FileSystem.h"
#include "platform/Progress.h"
#include "reports/LinkEntries.h"

#include <QStringList>

#include <vector>

/// What the link file of one set says; nothing when there is none, or none that can be read.
struct SetLinks
{
    QString set;           ///< name of its folder below Docs
    QString problem = {};  ///< why the file could not be read; "" when it could or is not there
    LinkRows targets = {}; ///< good: the page is there, with something in its first line
    LinkRows references = {};
};

/// Reads the link files of these sets, each once and on several threads, and looks for the pages
/// that they publish. Throws Unwinding when Stop was pressed.
std::vector<SetLinks> readSetLinks(FileSystem &files, const XmlCharacters &characters,
                                   const QString &serverPath, const QStringList &sets,
                                   const Progress &progress);

/// The parts of a stored path "<set>\Book_A\start.htm#top", with backslashes.
struct StoredPlace
{
    QString set;       ///< the folder below Docs
    QString page = {}; ///< relative to that folder
    QString anchor = {};
    [[nodiscard]] QString place() const { return anchor.isEmpty() ? page : page + u'#' + anchor; }
};
StoredPlace storedPlace(QStringView stored);
/// What a link file of `set` stores, as it is shown beside the name of the set: without that name.
QString placeInSet(const QString &set, QStringView stored);
