#pragma once

#include <QString>

#include <optional>

class FileSystem;

// The one place that builds paths. Path texts are the product's: backslashes, drive letters.

/// Files of one project below "<server path>Docs\<name>\".
namespace ProjectFile {
inline constexpr QLatin1StringView toc{"QV_Toc.xml"};
inline constexpr QLatin1StringView categories{"QV_BookCategories.xml"};
inline constexpr QLatin1StringView status{"QV_StatusIndicators.xml"};
inline constexpr QLatin1StringView links{"QV_LinkID.xml"};
inline constexpr QLatin1StringView keyWords{"QV_SearchKeyWords.xml"};
inline constexpr QLatin1StringView globalFolder{"_Global Information"};
inline constexpr QLatin1StringView globalBook{"Book_Global.xml"};
inline constexpr QLatin1StringView quickNav{"QuickNav\\Book_QuickNav.xml"};
inline constexpr QLatin1StringView searchWordsFolder{"Search_Words"};
inline constexpr QLatin1StringView backupFolder{"_Backup"};
} // namespace ProjectFile

/// "<server path>Docs\", "<server path>Docs\QV_Selection.xml", and so on. `serverPath` ends in "\".
QString docsFolder(const QString &serverPath);
QString cataloguePath(const QString &serverPath);
QString defaultCategoriesPath(const QString &serverPath);

/// True when `name` is one safe path component: not empty, not "." or "..", no separator, drive
/// colon, wildcard, quote, control character or lone surrogate, no device name, no trailing dot
/// or blank, at most 255 characters. Names that come out of files pass here before they are used.
bool isSafeName(const QString &name);

/// "<server path>Docs\<name>\" without touching the disk. Raises 75 when `name` is not safe.
QString projectFolder(const QString &serverPath, const QString &name);

/// The same, and raises unless it is a real folder directly below Docs (76 missing, 75 a link).
QString existingProjectFolder(FileSystem &files, const QString &serverPath, const QString &name);

/// `base` + `value` when `value` is a relative path that stays below `base` (no root, drive,
/// network name, "..", ":", device name); otherwise nothing. Slashes count as backslashes.
std::optional<QString> insideOf(const QString &base, const QString &value);

/// `path` without / with a backslash at its end; last component; all before it, with backslash.
QString withoutBackslash(const QString &path);
QString withBackslash(const QString &path);
QString lastComponent(const QString &path);
QString parentFolder(const QString &path);

/// The beginning of a name that takes at most so many bytes on the disk; characters stay whole.
QString shortened(const QString &name, qsizetype bytes);
