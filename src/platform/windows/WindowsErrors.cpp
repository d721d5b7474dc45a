#include "platform/windows/WindowsErrors.h"

using namespace Qt::StringLiterals;

namespace {

constexpr DWORD diskQuotaExceeded = 1295; // ERROR_DISK_QUOTA_EXCEEDED

int numberOf(DWORD code, int whenMissing)
{
    switch (code) {
    case ERROR_FILE_NOT_FOUND:
        return whenMissing;
    case ERROR_PATH_NOT_FOUND:
        return PathNotFound;
    case ERROR_ACCESS_DENIED:
    case ERROR_WRITE_PROTECT:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
    case diskQuotaExceeded:
    case ERROR_NOT_ENOUGH_QUOTA:
    case ERROR_NETWORK_ACCESS_DENIED:
    case ERROR_DELETE_PENDING:
        return PermissionDenied;
    default:
        return PathFileAccess;
    }
}

QString reasonOf(DWORD code)
{
    if (code == ERROR_CANT_ACCESS_FILE)
        return u"It is a link"_s;
    if (code == ERROR_SHARING_VIOLATION || code == ERROR_LOCK_VIOLATION)
        return u"Another program has it open"_s;
    return QString::fromStdWString(win32::describe(code));
}

} // namespace

void raiseSystemError(DWORD code, QLatin1StringView what, const QString &path, int whenMissing)
{
    throw QvError(numberOf(code, whenMissing), {},
                  what + u": "_s + path + u" ("_s + reasonOf(code) + u')');
}

void raiseFileError(int number, QLatin1StringView what, const QString &path)
{
    throw QvError(number, {}, what + u": "_s + path);
}
