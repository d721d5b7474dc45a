#include "platform/portable/RangeLock.h"

#include "platform/portable/Descriptor.h"
#include "platform/portable/SystemErrors.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto cannotLock = "The lock file cannot be used"_L1;

/// Asks for the whole file or gives it back, without waiting. The lock belongs to the open file,
/// so that it also keeps out the other threads of this process.
bool setLock(int file, short type)
{
    struct flock range
    {
    };
    range.l_type = type;
    range.l_whence = SEEK_SET;
    return fcntl(file, F_OFD_SETLK, &range) == 0;
}

class RangeLock final : public FileLock
{
public:
    explicit RangeLock(Descriptor file)
        : m_file(std::move(file))
    {
    }
    ~RangeLock() override { setLock(m_file.get(), F_UNLCK); }

private:
    Descriptor m_file;
};

// The owner may always write, or a lock file made beside a read-only file would never open again.
void takePermissions(int file, const QByteArray &like)
{
    struct stat info
    {
    };
    if (stat(like.constData(), &info) != 0)
        return;
    if (fchown(file, uid_t(-1), info.st_gid) != 0)
        errno = 0; // the group of another author: only its members can give it
    fchmod(file, (info.st_mode & 0666) | S_IRUSR | S_IWUSR);
}

Descriptor openLockFile(const QByteArray &place, const QString &path, const QByteArray &like)
{
    constexpr int flags = O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    Descriptor made(open(place.constData(), flags | O_CREAT | O_EXCL, 0666));
    if (made.isOpen()) {
        takePermissions(made.get(), like);
        return made;
    }
    if (errno != EEXIST)
        raiseSystemError(errno, cannotLock, path, PathNotFound);
    Descriptor file(open(place.constData(), flags));
    if (!file.isOpen() && errno == ENOENT) // its holder has just removed it
        return openLockFile(place, path, like);
    struct stat info
    {
    };
    if (!file.isOpen() || fstat(file.get(), &info) != 0)
        raiseSystemError(errno, cannotLock, path);
    if (!S_ISREG(info.st_mode))
        raiseFileError(PathFileAccess, "The lock file is no ordinary file"_L1, path);
    return file;
}

/// False when the file was removed before it was locked; another one may lie in its place.
bool liesAt(const QByteArray &place, int file)
{
    struct stat own
    {
    };
    struct stat there
    {
    };
    return fstat(file, &own) == 0 && lstat(place.constData(), &there) == 0
           && own.st_dev == there.st_dev && own.st_ino == there.st_ino;
}

} // namespace

std::unique_ptr<FileLock> lockFileAt(const QByteArray &place, const QString &path,
                                     const QByteArray &like, std::chrono::milliseconds patience)
{
    const auto end = std::chrono::steady_clock::now() + patience;
    for (;;) {
        Descriptor file = openLockFile(place, path, like);
        while (!setLock(file.get(), F_WRLCK)) {
            if (errno != EAGAIN && errno != EACCES && errno != EINTR)
                raiseSystemError(errno, cannotLock, path);
            if (std::chrono::steady_clock::now() >= end)
                return nullptr;
            std::this_thread::sleep_for(10ms);
        }
        if (liesAt(place, file.get()))
            return std::make_unique<RangeLock>(std::move(file));
    }
}
