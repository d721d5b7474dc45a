#pragma once

#include "tools/build/BuildInput.h"
#include "tools/build/ProjectListing.h"

#include <vector>

/// The name of a project's packed copy, which lies at the top of its folder.
QString packName(const QString &project);

/// What of a project goes to the server: everything but packed copies, logs, backups, locks,
/// temporary files, caches and, unless `withSources`, the files inside the project that pages were
/// made from and that are no pages themselves.
struct PackContents
{
    std::vector<ProjectListing::File> files; ///< in order of path
    QList<Finding> warnings = {};            ///< names that will give trouble elsewhere
    qint64 bytes = 0;                        ///< of all files together
};

PackContents packContents(const BuildInput &input, const ProjectListing &listing, bool withSources);
