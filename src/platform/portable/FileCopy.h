#pragma once

#include <QString>

/// A name in an open folder (AT_FDCWD: a full native path), and what the product calls it.
struct FilePlace
{
    int folder;
    const char *name;
    QString path;
};

/// Copies one regular file with its times and permissions to a name that is not taken. On failure
/// nothing is left at the target.
void copyFileAt(const FilePlace &from, const FilePlace &to);
