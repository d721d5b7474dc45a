#pragma once

#include "platform/FileSystem.h"

enum class Detail {
    All,
    KindOfFiles, ///< of files and links nothing but the kind, which needs no look at each
};

/// What lies in an open folder, in the order of names. Raises 75 when a name is none that the
/// product can say (bytes that are no text, a backslash); `path` is for messages.
QList<FolderEntry> readFolder(int folder, const QString &path, Detail detail = Detail::All);

/// A name as the system spells it. Raises 75 when it is not one name.
QByteArray nameBytes(const QString &name, const QString &folder);
