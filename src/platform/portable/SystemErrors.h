#pragma once

#include "platform/QvError.h"

// Errors of system calls in the numbers and words of the product.

/// Raises "<what>: <path> (<reason>)". `whenMissing` is the number for a name that is not there:
/// FileNotFound or PathNotFound.
[[noreturn]] void raiseSystemError(int error, QLatin1StringView what, const QString &path,
                                   int whenMissing = FileNotFound);

/// Raises `number` with "<what>: <path>".
[[noreturn]] void raiseFileError(int number, QLatin1StringView what, const QString &path);
