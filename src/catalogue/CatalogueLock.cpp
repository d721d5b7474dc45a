#include "catalogue/CatalogueLock.h"

#include "platform/QvError.h"

using namespace Qt::StringLiterals;

CatalogueLock::CatalogueLock(FileSystem &files, const QString &cataloguePath)
{
    const QString lockPath = cataloguePath + ".lock"_L1;
    m_lock = files.lock(lockPath, cataloguePath, std::chrono::seconds(10));
    if (!m_lock)
        throw QvError(PermissionDenied, {},
                      u"Another author's QV Developer is changing the list of projects. "
                      "Try again in a moment. The file that it holds is "_s
                          + lockPath);
}
