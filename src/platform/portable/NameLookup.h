#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

// Names without regard to case, for a disk that tells capitals apart. An exact name always wins.
// `path` is what the product calls the thing, for messages. Two names that fit raise 75.

/// The native path under which something is really there, or nothing.
std::optional<QByteArray> findAnyCase(const QByteArray &native, const QString &path);

/// The native path for something to be made or replaced: the name that is there, else the one
/// given, in its folder as it is really spelled. Raises 76 when that folder is not there.
QByteArray placeAnyCase(const QByteArray &native, const QString &path);
