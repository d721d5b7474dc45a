#pragma once

#include "platform/portable/Descriptor.h"

#include <QString>

/// A name in an open folder (AT_FDCWD: a full native path), and what the product calls it.
struct FilePlace
{
    int folder;
    const char *name;
    QString path;
};

/// Opens a file to copy it, not following links; -1 with errno when that fails.
int openToCopy(int folder, const char *name);

/// Copies one regular file with its times and permissions to a name that is not taken. On failure
/// nothing is left at the target. `file` comes from `openToCopy`, whose failure is raised here;
/// `from` is what the product calls it.
void copyFileAt(Descriptor file, const QString &from, const FilePlace &to);
