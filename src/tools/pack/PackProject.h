#pragma once

#include "tools/pack/PackPlan.h"

struct PackResult
{
    QString path;           ///< of the packed copy
    int count = 0;          ///< files in it, its own list aside
    qint64 bytes = 0;       ///< of these files
    qint64 packedBytes = 0; ///< of the packed copy
    int reused = 0;         ///< files taken compressed from the last pack
};

/// Packs the project into "QV<project>_Server.Zip" at the top of its folder: every file as it lies
/// there now, first of all "QV_Package.xml", which lists them. The same files make the same bytes,
/// whatever was packed before. Until the new one is whole the last pack stays as it is.
/// The progress counts kilobytes. Raises `Unwinding{Stopped}`; a QvError that names the file when
/// one cannot be read, or changed while it was packed (after a second try), or when the packed copy
/// cannot be written.
PackResult packProject(FileSystem &files, const BuildInput &input, const PackOptions &options,
                       const Progress &progress = {});
