#pragma once

#include "platform/CharacterSet.h"

#include <QDateTime>
#include <QFile>

#ifdef Q_OS_WIN
#include <qt_windows.h>
#else
#include <fcntl.h>
#include <sys/stat.h>
#endif

// What tests need and not every system gives.
namespace here {

#ifdef Q_OS_WIN
/// Whether names that differ only in case, names of devices and ":" or "?" make files of their own.
inline constexpr bool takesEveryName = false;
/// Whether a file can be there whose owner may not read it.
inline constexpr bool hasRights = false;
inline constexpr bool runsScripts = false; ///< of the shell, by their name
#else
inline constexpr bool takesEveryName = true;
inline constexpr bool hasRights = true;
inline constexpr bool runsScripts = true;
#endif

/// A link to a file or folder. False where none can be made: under Windows not everybody may.
inline bool link(const QString &target, const QString &at)
{
#ifdef Q_OS_WIN
    const auto wide = [](const QString &text) {
        return reinterpret_cast<const wchar_t *>(text.utf16());
    };
    const DWORD kind = GetFileAttributesW(wide(target)) & FILE_ATTRIBUTE_DIRECTORY
                           ? SYMBOLIC_LINK_FLAG_DIRECTORY
                           : 0;
    constexpr DWORD evenUnprivileged = 2;
    if (!CreateSymbolicLinkW(wide(at), wide(target), kind | evenUnprivileged))
        return false;
    const DWORD made = GetFileAttributesW(wide(at));
    return made != INVALID_FILE_ATTRIBUTES && (made & FILE_ATTRIBUTE_REPARSE_POINT);
#else
    if (!QFile::link(target, at))
        qFatal("no link at %s", qPrintable(at));
    return true;
#endif
}

/// Sets when a file or folder was last changed.
inline void setTime(const QString &path, const QDateTime &time)
{
#ifdef Q_OS_WIN
    const HANDLE file =
        CreateFileW(reinterpret_cast<const wchar_t *>(path.utf16()), FILE_WRITE_ATTRIBUTES, 7,
                    nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    constexpr qint64 from1601 = 11'644'473'600'000;
    const auto ticks = quint64(time.toMSecsSinceEpoch() + from1601) * 10'000;
    const FILETIME when{DWORD(ticks), DWORD(ticks >> 32)};
    const bool isSet = SetFileTime(file, nullptr, nullptr, &when);
    CloseHandle(file);
#else
    const timespec when{time.toSecsSinceEpoch(), 0};
    const timespec times[] = {when, when};
    const bool isSet = utimensat(AT_FDCWD, QFile::encodeName(path), times, 0) == 0;
#endif
    if (!isSet)
        qFatal("no time for %s", qPrintable(path));
}

/// Wine lacks a few of Windows' character sets.
inline bool hasCharset(const QByteArray &name)
{
#ifdef Q_OS_WIN
    return CharacterSet(name).isKnown();
#else
    (void)name;
    return true;
#endif
}

} // namespace here
