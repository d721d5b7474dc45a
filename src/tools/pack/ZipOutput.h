#pragma once

#include "platform/FileStreams.h"

#include <QByteArray>

#include <functional>
#include <string>
#include <vector>

/// An entry of an archive that is compressed already.
struct ZipEntry
{
    std::string name; ///< UTF-8, with "/"
    qint64 size = 0;
    qint64 modified = 0; ///< milliseconds since 1970, UTC
    quint32 sum = 0;     ///< CRC-32
    bool isStored = false;
};

/// Writes an archive of these entries, in their order. `packed` is asked for the bytes of each when
/// its turn comes, as they shall lie in the archive; what it throws is thrown here, and what `file`
/// throws as well. The same entries make the same bytes. `file` is not put in place.
void writeZip(FileWriter &file, const std::vector<ZipEntry> &entries,
              const std::function<QByteArray(size_t)> &packed);
