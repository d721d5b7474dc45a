#pragma once

#include "platform/QvError.h"
#include "platform/windows/win32/Win32Error.h"

#include <QString>

/// Raises what the system says about `path`: `what` says what could not be done, `whenMissing` is
/// the number for "not there".
[[noreturn]] void raiseSystemError(DWORD code, QLatin1StringView what, const QString &path,
                                   int whenMissing = FileNotFound);

/// Raises `number` with "<what>: <path>".
[[noreturn]] void raiseFileError(int number, QLatin1StringView what, const QString &path);

/// Calls, and raises what the system says as an error of `path`.
template <typename Call>
auto explained(QLatin1StringView what, const QString &path, Call call,
               int whenMissing = FileNotFound)
{
    try {
        return call();
    } catch (const win32::Error &error) {
        raiseSystemError(error.code, what, path, whenMissing);
    }
}
