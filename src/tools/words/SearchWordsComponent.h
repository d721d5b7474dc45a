#pragma once

#include "components/SearchWordsBuilder.h"
#include "platform/FileSystem.h"
#include "startup/Session.h"

#include <memory>

/// The search-words component: the search-words tool of a build, alone.
std::unique_ptr<SearchWordsBuilder> makeSearchWordsBuilder(Session &session, FileSystem &files);
