#pragma once

#include "components/ConversionReport.h"

#include <QByteArray>

/// The file of a migrated project that tells what became of its database.
inline constexpr QLatin1StringView migrationLogFile{"Migration_Log.txt"};

/// Its bytes: a title, a summary, a line for each table, an empty line, a line for each problem.
QByteArray migrationLog(const QString &project, const QString &id, const ConversionReport &report);
