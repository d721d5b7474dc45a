#pragma once

#include "components/LinkIDMerger.h"
#include "components/XmlCharacters.h"
#include "platform/FileSystem.h"
#include "startup/Session.h"

#include <memory>

/// The link-ID merge component, which lives with its file.
std::unique_ptr<LinkIDMerger> makeLinkIDMerger(Session &session, FileSystem &files,
                                               const XmlCharacters &characters);
