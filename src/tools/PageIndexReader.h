#pragma once

#include "platform/FileSystem.h"
#include "tools/LinkPlaces.h"
#include "tools/PageIndex.h"

/// Reads one page or style sheet for the index. `path` is relative to `projectFolder`, which ends
/// in a backslash, `places` are those of the project. What goes wrong is told in the page's
/// `problem`.
IndexedPage readIndexedPage(FileSystem &files, const QString &projectFolder, const QString &path,
                            const QString &language, LinkPlaces &places);

/// Where a relative reference leads that begins in `folder`: relative to the folder of `project`,
/// nothing when it leads out of it. It may climb out and come back through the project's own
/// folder, whose name may be written as its marker.
std::optional<QString> targetInProject(const QString &project, const QString &folder,
                                       const QString &path);

/// Where the relative references of a page begin when its <base> leads to `to`, as
/// `targetInProject` says; `path` is that of its address. "" or with a backslash at its end.
QString baseFolder(const QString &path, const QString &to);

bool isStyleSheetName(QStringView fileName);
