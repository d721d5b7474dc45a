#pragma once

#include "platform/Paths.h"

/// Folders of a project that the product makes, beside those of the books. Their names are
/// compared without regard to case.
inline constexpr QLatin1StringView productFolders[]{
    ProjectFile::globalFolder,        ProjectFile::backupFolder,     QLatin1StringView{"DocToDoc"},
    QLatin1StringView{"DynamicHelp"}, QLatin1StringView{"QuickNav"}, ProjectFile::searchWordsFolder,
};
