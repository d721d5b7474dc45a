#pragma once

#include "platform/FileSystem.h"

// Files too large to be held in memory as a whole: `FileSystem::openFile` and `startFile`.

/// A regular file, open for reading at any place. Several threads may read at once.
class FileReader
{
public:
    FileReader() = default;
    FileReader(const FileReader &) = delete;
    FileReader &operator=(const FileReader &) = delete;
    virtual ~FileReader() = default;

    [[nodiscard]] virtual qint64 size() const = 0; ///< bytes, when it was opened
    /// Copies what lies at `offset`; gives the number of bytes, less than `count` only at the end.
    virtual qint64 read(qint64 offset, char *to, qint64 count) const = 0;
};

/// A file that is written piece by piece beside the one it replaces. When this goes before
/// `putInPlace`, what was written goes with it, and the target is as it was.
class FileWriter
{
public:
    FileWriter() = default;
    FileWriter(const FileWriter &) = delete;
    FileWriter &operator=(const FileWriter &) = delete;
    virtual ~FileWriter() = default;

    /// `offset` is at most the number of bytes written so far.
    virtual void write(qint64 offset, const char *bytes, qint64 count) = 0;
    /// Flushes it to the disk and gives it its name. The last call.
    virtual void putInPlace() = 0;
};
