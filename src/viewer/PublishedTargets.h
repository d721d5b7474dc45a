#pragma once

#include "components/XmlCharacters.h"
#include "platform/FileSystem.h"
#include "startup/Session.h"
#include "viewer/ViewerPlace.h"

#include <QStringList>

#include <optional>

/// The page that publishes a link identifier, by the link files of `sets` in that order; the first
/// one decides. Nothing when none does. A file that is missing or cannot be read publishes nothing.
std::optional<ViewerPlace> publishedTarget(const Session &session, FileSystem &files,
                                           const XmlCharacters &characters, const QStringList &sets,
                                           const QString &identifier);
