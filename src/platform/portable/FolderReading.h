#pragma once

#include "platform/FileSystem.h"

/// What lies in an open folder, in the order of names. Raises 75 when a name is none that the
/// product can say (bytes that are no text, a backslash); `path` is for messages.
QList<FolderEntry> readFolder(int folder, const QString &path);

/// A name as the system spells it. Raises 75 when it is not one name.
QByteArray nameBytes(const QString &name, const QString &folder);
