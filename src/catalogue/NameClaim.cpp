#include "catalogue/NameClaim.h"

#include "platform/Paths.h"
#include "platform/QvError.h"

using namespace Qt::StringLiterals;

NameClaim::NameClaim(FileSystem &files, const QString &folder)
    : m_files(files)
    , m_path(parentFolder(folder) + shortened(lastComponent(folder), 240) + u".qvnew.lock"_s)
    , m_lock(files.lock(m_path, parentFolder(folder), {}))
{
    if (!m_lock)
        throw QvError(
            PermissionDenied, {},
            u"Another author's QV Developer is just making, renaming or deleting the project %1. "
            u"Try "
            "again when it is done, or choose another name. The file that it holds is %2"_s.arg(
                lastComponent(folder), m_path));
}

NameClaim::~NameClaim()
{
    trap([](const QvError &) {}, [this] { m_files.removeFile(m_path, true); }); // it does no harm
}
