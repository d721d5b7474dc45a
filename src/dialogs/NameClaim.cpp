#include "dialogs/NameClaim.h"

#include "platform/Paths.h"
#include "platform/QvError.h"

using namespace Qt::StringLiterals;

NameClaim::NameClaim(FileSystem &files, const QString &folder)
    : m_files(files)
    , m_path(folder + u".qvnew.lock"_s)
    , m_lock(files.lock(m_path, parentFolder(folder), {}))
{
    if (!m_lock)
        throw QvError(
            PermissionDenied, {},
            u"Another author's QV Developer is just making the project %1. Choose another "
            "name, or try again when it is done. The file that it holds is %2"_s.arg(
                lastComponent(folder), m_path));
}

NameClaim::~NameClaim()
{
    trap([](const QvError &) {}, [this] { m_files.removeFile(m_path, true); }); // it does no harm
}
