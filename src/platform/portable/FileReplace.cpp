#include "platform/portable/FileReplace.h"

#include "platform/portable/Descriptor.h"
#include "platform/portable/SystemErrors.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr auto cannotWrite = "The file cannot be written"_L1;
constexpr qsizetype longestName = 255; // bytes
constexpr mode_t permissionBits = 07777;

/// The file that is to be replaced; nothing when there is none yet.
std::optional<struct stat> replaceable(int folder, const char *name, const QString &path,
                                       ReplaceOptions options)
{
    struct stat info
    {
    };
    if (fstatat(folder, name, &info, AT_SYMLINK_NOFOLLOW) != 0) {
        if (errno != ENOENT)
            raiseSystemError(errno, cannotWrite, path);
        return std::nullopt;
    }
    if (S_ISLNK(info.st_mode))
        raiseSystemError(ELOOP, cannotWrite, path);
    if (!S_ISREG(info.st_mode))
        raiseFileError(PathFileAccess, "The file cannot be written, it is no ordinary file"_L1,
                       path);
    if ((info.st_mode & S_IWUSR) == 0 && !options.throughReadOnly)
        raiseFileError(PermissionDenied, "The file cannot be written, it is read-only"_L1, path);
    return info;
}

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

/// The new content on its way into place; it goes when it does not get there.
class TemporaryFile final
{
public:
    TemporaryFile(int folder, const QByteArray &name, mode_t mode, const QString &path)
        : m_folder(folder)
        , m_name(temporaryName(name))
        , m_path(path)
        , m_file(create(mode))
    {
    }
    TemporaryFile(const TemporaryFile &) = delete;
    TemporaryFile &operator=(const TemporaryFile &) = delete;
    ~TemporaryFile()
    {
        if (!m_inPlace)
            unlinkat(m_folder, m_name.constData(), 0);
    }

    void takePermissions(const struct stat &old)
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

    void write(const QByteArray &content)
    {
        const char *next = content.constData();
        const char *const end = next + content.size();
        while (next < end) {
            const ssize_t written = ::write(m_file.get(), next, static_cast<size_t>(end - next));
            check(written > 0 || (written < 0 && errno == EINTR));
            next += qMax<ssize_t>(written, 0);
        }
    }

    void putInPlace(const char *name, bool sync)
    {
        if (sync)
            check(fsync(m_file.get()) == 0);
        check(m_file.close());
        check(renameat(m_folder, m_name.constData(), m_folder, name) == 0);
        m_inPlace = true;
    }

private:
    int open(mode_t mode) const
    {
        return openat(m_folder, m_name.constData(),
                      O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode);
    }

    // The lock tells a file in the making (by another thread) from one that a dead process with
    // our number left behind.
    Descriptor create(mode_t mode)
    {
        int file = open(mode);
        if (file < 0 && errno == EEXIST && removeAbandoned())
            file = open(mode);
        if (file < 0)
            raiseSystemError(errno, cannotWrite, m_path, PathNotFound);
        flock(file, LOCK_EX | LOCK_NB); // fails only where nobody else can lock either
        return Descriptor(file);
    }

    bool removeAbandoned()
    {
        const Descriptor left(
            openat(m_folder, m_name.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
        const bool inUse =
            left.isOpen() && flock(left.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
        if (inUse)
            raiseFileError(PermissionDenied, "The file is being written at the moment"_L1, m_path);
        return unlinkat(m_folder, m_name.constData(), 0) == 0;
    }

    void check(bool good) const
    {
        if (!good)
            raiseSystemError(errno, cannotWrite, m_path);
    }

    int m_folder;
    QByteArray m_name;
    QString m_path;
    Descriptor m_file;
    bool m_inPlace = false;
};

int openFolderOf(const QByteArray &place)
{
    const qsizetype slash = place.lastIndexOf('/');
    return open(place.first(slash + 1).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
}

QByteArray nameOf(const QByteArray &place)
{
    return place.sliced(place.lastIndexOf('/') + 1);
}

void replaceIn(int folder, const QByteArray &name, const std::optional<struct stat> &old,
               const QString &path, const QByteArray &content, ReplaceOptions options)
{
    TemporaryFile file(folder, name, old ? old->st_mode & 0777 : 0666, path);
    if (old)
        file.takePermissions(*old);
    file.write(content);
    file.putInPlace(name.constData(), options.sync);
    if (options.sync && !syncFolderAt(folder))
        raiseSystemError(
            errno, "The file is written, but its folder could not be flushed to the disk"_L1, path);
}

} // namespace

void replaceFileAt(const QByteArray &place, const QString &path, const QByteArray &content,
                   ReplaceOptions options)
{
    const Descriptor folder(openFolderOf(place));
    if (!folder.isOpen())
        raiseSystemError(errno, cannotWrite, path, PathNotFound);
    const QByteArray name = nameOf(place);
    const auto old = replaceable(folder.get(), name.constData(), path, options);
    replaceIn(folder.get(), name, old, path, content, options);
}

bool replaceThereAt(const QByteArray &place, const QString &path, const QByteArray &content,
                    ReplaceOptions options)
{
    const Descriptor folder(openFolderOf(place));
    if (!folder.isOpen())
        return false;
    const QByteArray name = nameOf(place);
    const auto old = replaceable(folder.get(), name.constData(), path, options);
    if (old)
        replaceIn(folder.get(), name, old, path, content, options);
    return old.has_value();
}

bool syncFolderAt(int folder)
{
    return fsync(folder) == 0 || errno == EINVAL; // EINVAL: this disk cannot flush folders
}
