#pragma once

#include "tools/build/Finding.h"

#include <QList>
#include <QString>

#include <array>

/// The four tools that make a project's derived data, in the order of their status indicators.
enum class BuildTool { DocToDoc, ContextSettings, QuickNav, SearchIndex };

inline constexpr std::array allBuildTools{BuildTool::DocToDoc, BuildTool::ContextSettings,
                                          BuildTool::QuickNav, BuildTool::SearchIndex};

/// "Document to document links" as windows and logs name it.
QString nameOf(BuildTool tool);
/// The element of the status file: "DoctoDoc".
QLatin1StringView elementOf(BuildTool tool);
/// What the tool writes last, relative to the project folder; its time is that of the last run.
QLatin1StringView resultOf(BuildTool tool);

/// Colours of the status file, decimal RGB.
namespace Light {
inline constexpr qint32 mustRun = 16777215;
inline constexpr qint32 good = 3046706;
inline constexpr qint32 warnings = 16361509;
inline constexpr qint32 failed = 12986408;
} // namespace Light

qint32 lightOf(ToolReport::Outcome outcome);
