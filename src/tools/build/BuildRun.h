#pragma once

#include "platform/FileSystem.h"
#include "platform/Progress.h"
#include "tools/build/BuildInput.h"
#include "tools/build/BuildTools.h"

#include <QList>

#include <array>
#include <functional>
#include <optional>

/// How much the quality checks look at.
enum class CheckLevel {
    Off,
    Links,     ///< links, anchors, structure of the books
    Everything ///< also the markup of pages, pictures, data
};

/// What the author ordered.
struct BuildOrder
{
    QList<BuildTool> tools;
    CheckLevel checks = CheckLevel::Everything;
    bool everything = false; ///< read all pages again, whatever is known of them
    int threads = 2;
};

/// The parts of a build, in the order they run: first the pages are read for all of them.
enum class BuildStage { Pages, DocToDoc, ContextSettings, QuickNav, SearchIndex, Checks };
QString nameOf(BuildStage stage);

/// Told how a build goes on, on the thread it runs on. All may be empty.
struct BuildObserver
{
    std::function<void(BuildStage stage)> begins;
    /// `report` of `Pages` has only a summary.
    std::function<void(BuildStage stage, const ToolReport &report)> ends;
    /// Somebody changed an author's file since the pages were listed: what tools made may not show
    /// it. Comes last, also before a stop is raised.
    std::function<void()> outdated = {};
};

struct BuildResult
{
    std::array<std::optional<ToolReport>, 4> tools; ///< of those that ran
    std::optional<ToolReport> checks;
    bool success = false; ///< nothing failed
    [[nodiscard]] const std::optional<ToolReport> &of(BuildTool tool) const
    {
        return tools[static_cast<size_t>(tool)];
    }
};

/// Runs the ordered tools over a project: every page is read and scanned once for all of them, and
/// pages that are as they were are not read again. A tool that fails is reported as failed, and the
/// others run all the same. Never changes what the author made. The status file is the caller's to
/// bring up to date. Raises `Unwinding{Stopped}`; tools that were done stay done then. Raises 53 or
/// 75 when the table of contents cannot be read, 70 while another program builds the project.
BuildResult runBuild(Session &session, FileSystem &files, const QString &project,
                     const QString &language, const BuildOrder &order,
                     const BuildObserver &observer, const Progress &progress);
/// The same for author files that were read before.
BuildResult runBuild(FileSystem &files, const BuildInput &input, const BuildOrder &order,
                     const BuildObserver &observer, const Progress &progress);
