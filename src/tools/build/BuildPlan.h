#pragma once

#include "tools/build/BuildInput.h"
#include "tools/build/BuildTools.h"
#include "tools/build/ProjectListing.h"

#include <QDateTime>
#include <QStringList>

#include <array>
#include <optional>

/// How one tool's derived data stand to the author's files.
struct ToolState
{
    std::optional<qint64> light; ///< as stored in the status file
    QDateTime lastRun;           ///< UTC; invalid when it never ran to its end
    QStringList reasons;         ///< why it should run, in sentences; none when it need not
    [[nodiscard]] bool isStale() const { return !reasons.isEmpty(); }
};

/// What a build would do, as far as it can be told without reading a page: by the status lights and
/// by what is newer than the last run.
struct BuildPlan
{
    std::array<ToolState, 4> tools; ///< in the order of `BuildTool`
    [[nodiscard]] const ToolState &of(BuildTool tool) const
    {
        return tools[static_cast<size_t>(tool)];
    }
};

/// `lights` as the status file holds them, in the order of `BuildTool`.
BuildPlan planBuild(const BuildInput &input, const ProjectListing &listing,
                    const std::array<std::optional<qint64>, 4> &lights);

/// Whether an author's file that tools look at changed, came or went between two looks.
bool sourcesDiffer(const BuildInput &input, const ProjectListing &before,
                   const ProjectListing &now);
