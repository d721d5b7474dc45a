#pragma once

#include "platform/FileSystem.h"
#include "platform/Progress.h"

#include <QList>
#include <QString>

/// An entry of an archive that was not unpacked.
struct RefusedEntry
{
    QString name, reason;
};

/// Unpacks an archive into a fresh folder, which is made. What is no plain file with a safe
/// relative name of its own, is encrypted or damaged, or is larger than it can honestly be, is left
/// out and returned. Nothing is flushed to the disk. Raises 75 when it is no archive, or too large.
QList<RefusedEntry> unpackArchive(FileSystem &files, const QString &archive, const QString &folder,
                                  const Progress &progress);
