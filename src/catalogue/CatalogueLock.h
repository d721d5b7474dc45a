#pragma once

#include "platform/FileSystem.h"

#include <memory>

/// Held while the list of projects is read, changed and saved, so that authors who share a server
/// never overwrite each other's entries. Released at the end of its scope.
/// The operations that change the catalogue take it themselves: never hold it while calling one.
class CatalogueLock final
{
public:
    /// Waits at most 10 seconds for "<cataloguePath>.lock". Raises 70 with advice when another
    /// author's program holds it all that time.
    CatalogueLock(FileSystem &files, const QString &cataloguePath);

private:
    std::unique_ptr<FileLock> m_lock;
};
