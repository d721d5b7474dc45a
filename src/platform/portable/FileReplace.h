#pragma once

#include "platform/FileStreams.h"

/// The one writer: replaces the file at the native path `place`, or makes it, as
/// `FileSystem::replaceFile` describes. `path` is what the product calls it, for messages.
void replaceFileAt(const QByteArray &place, const QString &path, const QByteArray &content,
                   ReplaceOptions options);

/// The same for a file that is there under exactly this name; false, with nothing done, when there
/// is none or its folder cannot be opened.
bool replaceThereAt(const QByteArray &place, const QString &path, const QByteArray &content,
                    ReplaceOptions options);

/// The same as `replaceFileAt`, written piece by piece.
std::unique_ptr<FileWriter> startReplacingAt(const QByteArray &place, const QString &path,
                                             ReplaceOptions options);

/// Flushes an open folder to the disk; false with errno when that fails.
bool syncFolderAt(int folder);
