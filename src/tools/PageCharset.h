#pragma once

#include "startup/PageText.h"

/// `text` as a page in UTF-8: a charset that it declares is changed to UTF-8, and one that declares
/// none gets a mark.
PageText inUtf8(const QString &text);
