#include "platform/portable/SystemErrors.h"

#include <cerrno>
#include <cstring>

using namespace Qt::StringLiterals;

namespace {

int numberOf(int error, int whenMissing)
{
    switch (error) {
    case ENOENT:
        return whenMissing;
    case ENOTDIR:
        return PathNotFound;
    case EACCES:
    case EPERM:
    case EROFS:
    case ENOSPC:
    case EDQUOT:
        return PermissionDenied;
    default:
        return PathFileAccess;
    }
}

QString reasonOf(int error)
{
    if (error == ELOOP)
        return u"It is a link"_s;
    const char *text = strerrordesc_np(error); // English whatever the locale
    return text ? QString::fromLatin1(text) : u"Error "_s + QString::number(error);
}

} // namespace

void raiseSystemError(int error, QLatin1StringView what, const QString &path, int whenMissing)
{
    throw QvError(numberOf(error, whenMissing), {},
                  what + u": "_s + path + u" ("_s + reasonOf(error) + u')');
}

void raiseFileError(int number, QLatin1StringView what, const QString &path)
{
    throw QvError(number, {}, what + u": "_s + path);
}
