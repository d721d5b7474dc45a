#pragma once

#include "tools/build/BuildInput.h"
#include "tools/build/ProjectListing.h"

#include <QDateTime>

struct PackOptions
{
    bool withSources = false; ///< also the files that pages were made from
    int threads = 2;
};

/// One file of the next pack or of the last.
struct PackItem
{
    enum class Change { Added, Changed, Removed, Unchanged };

    Change change = Change::Unchanged;
    QString path;      ///< relative to the project folder, with backslashes
    qint64 size = 0;   ///< now; 0 when it was removed
    qint64 before = 0; ///< in the last pack; 0 when it was not in it
};

/// What the next pack would hold, beside what the last one holds.
struct PackPlan
{
    QString path;             ///< of the packed copy
    QList<PackItem> items;    ///< in order of path
    QList<Finding> warnings;  ///< PACK01 to PACK04: names that will give trouble
    qint64 bytes = 0;         ///< of the files that would go in
    QDateTime last;           ///< time of the last pack's newest file, UTC; invalid without one
    QString lastProblem = {}; ///< why the last pack could not be read; all counts as added then

    [[nodiscard]] int count(PackItem::Change change) const;
    /// Whether packing again would change anything.
    [[nodiscard]] bool isCurrent() const;
};

/// Compares by size and time; a file of the same size and another time is read. Changes nothing.
PackPlan planPack(FileSystem &files, const BuildInput &input, const ProjectListing &listing,
                  const PackOptions &options, const Progress &progress = {});
