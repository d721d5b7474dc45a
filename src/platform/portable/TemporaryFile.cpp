#include "platform/portable/TemporaryFile.h"

#include "platform/portable/SystemErrors.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

constexpr auto cannotWrite = "The file cannot be written"_L1;
constexpr qsizetype longestName = 255; // bytes
constexpr mode_t permissionBits = 07777;

/// "<name>.qvtmp<pid>", cut at a whole character where it would be too long.
QByteArray temporaryName(QByteArray name)
{
    const QByteArray ending = ".qvtmp" + QByteArray::number(getpid());
    if (name.size() + ending.size() > longestName) {
        qsizetype keep = longestName - ending.size();
        while (keep > 0 && (name[keep] & 0xC0) == 0x80)
            --keep;
        name.truncate(keep);
    }
    return name + ending;
}

} // namespace

TemporaryFile::TemporaryFile(int folder, const QByteArray &name, mode_t mode, const QString &path)
    : m_folder(folder)
    , m_name(temporaryName(name))
    , m_path(path)
    , m_file(create(mode))
{
}

TemporaryFile::~TemporaryFile()
{
    if (!m_inPlace)
        unlinkat(m_folder, m_name.constData(), 0);
}

void TemporaryFile::takePermissions(const struct stat &old)
{
    struct stat fresh
    {
    };
    check(fstat(m_file.get(), &fresh) == 0);
    const bool sameOwner = fresh.st_uid == old.st_uid && fresh.st_gid == old.st_gid;
    // The owner can be given away by the administrator only; the group matters more.
    if (!sameOwner && fchown(m_file.get(), old.st_uid, old.st_gid) != 0
        && fchown(m_file.get(), uid_t(-1), old.st_gid) != 0)
        errno = 0;
    const mode_t wanted = old.st_mode & permissionBits; // a new owner may take bits away
    if (!sameOwner || (fresh.st_mode & permissionBits) != wanted)
        check(fchmod(m_file.get(), wanted) == 0);
}

void TemporaryFile::write(qint64 offset, const char *bytes, qint64 count)
{
    qint64 done = 0;
    while (done < count) {
        const ssize_t written =
            pwrite(m_file.get(), bytes + done, static_cast<size_t>(count - done), offset + done);
        check(written > 0 || (written < 0 && errno == EINTR));
        done += qMax<ssize_t>(written, 0);
    }
}

void TemporaryFile::putInPlace(const char *name, bool sync)
{
    if (sync)
        check(fsync(m_file.get()) == 0);
    check(m_file.close());
    check(renameat(m_folder, m_name.constData(), m_folder, name) == 0);
    m_inPlace = true;
}

int TemporaryFile::open(mode_t mode) const
{
    return openat(m_folder, m_name.constData(),
                  O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode);
}

// The lock tells a file in the making (by another thread) from one that a dead process with our
// number left behind.
Descriptor TemporaryFile::create(mode_t mode)
{
    int file = open(mode);
    if (file < 0 && errno == EEXIST && removeAbandoned())
        file = open(mode);
    if (file < 0)
        raiseSystemError(errno, cannotWrite, m_path, PathNotFound);
    flock(file, LOCK_EX | LOCK_NB); // fails only where nobody else can lock either
    return Descriptor(file);
}

bool TemporaryFile::removeAbandoned() const
{
    const Descriptor left(
        openat(m_folder, m_name.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    const bool inUse =
        left.isOpen() && flock(left.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    if (inUse)
        raiseFileError(PermissionDenied, "The file is being written at the moment"_L1, m_path);
    return unlinkat(m_folder, m_name.constData(), 0) == 0;
}

void TemporaryFile::check(bool good) const
{
    if (!good)
        raiseSystemError(errno, cannotWrite, m_path);
}
