#pragma once

#include "components/ConversionReport.h"
#include "platform/Progress.h"

/// What the converter shall do.
struct ConversionOrder
{
    QString mode;         ///< "1": a whole book set
    QString database;     ///< path of the .mdb file
    QString targetFolder; ///< the new project's folder below Docs, without backslash
    QString projectName;
    QString projectId;
    QString language;          ///< ENU, DEU, ...: of the new project
    bool acceptPartly = false; ///< take what can be read of a damaged database
};

/// The product's database-to-XML converter for legacy book sets. It makes the project's folder and
/// files, lists the project, and writes the folder as the value "Path" of the key
/// "...\DBTOXML\Destination".
class DatabaseConverter
{
public:
    virtual ~DatabaseConverter() = default;
    /// How it ended is told by `report`. Raises 429, naming what is missing, when the converter is
    /// not installed, and `Unwinding{Stopped}`. A converter that broke or was stopped may leave
    /// "<target folder>.qvnew", which is the caller's to remove.
    virtual void convert(const ConversionOrder &order, const Progress &progress) = 0;
    /// True when the last conversion came to its end and wrote a project.
    virtual bool completed() = 0;
    /// Of the last conversion.
    [[nodiscard]] virtual const ConversionReport &report() const = 0;
};
