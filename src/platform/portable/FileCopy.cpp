#include "platform/portable/FileCopy.h"

#include "platform/portable/SystemErrors.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr off_t smallFile = 65536; // up to here plain reading and writing is the cheapest

struct Source
{
    Descriptor file;
    struct stat info
    {
    };
};

Source checkedSource(Descriptor file, const QString &from)
{
    Source source{std::move(file)};
    if (!source.file.isOpen() || fstat(source.file.get(), &source.info) != 0)
        raiseSystemError(errno, "The file cannot be copied"_L1, from);
    if (!S_ISREG(source.info.st_mode))
        raiseFileError(PathFileAccess, "The file cannot be copied, it is no ordinary file"_L1,
                       from);
    return source;
}

bool writeAll(int target, const char *next, ssize_t size)
{
    while (size > 0) {
        const ssize_t written = write(target, next, static_cast<size_t>(size));
        if (written < 0 && errno != EINTR)
            return false;
        next += qMax<ssize_t>(written, 0);
        size -= qMax<ssize_t>(written, 0);
    }
    return true;
}

/// Lets the system copy, or share, what it can; leaves the rest. False on errors of the disk.
bool copyInSystem(int source, int target)
{
    ssize_t copied = 1;
    while (copied > 0 || (copied < 0 && errno == EINTR))
        copied = copy_file_range(source, nullptr, target, nullptr, 1 << 30, 0);
    return copied == 0 || errno == EXDEV || errno == EINVAL || errno == ENOSYS
           || errno == EOPNOTSUPP;
}

bool copyByHand(int source, int target)
{
    std::array<char, smallFile> buffer; // not initialised: it is read into
    for (;;) {
        const ssize_t size = read(source, buffer.data(), buffer.size());
        if (size == 0)
            return true;
        if (size < 0 && errno == EINTR)
            continue;
        if (size < 0 || !writeAll(target, buffer.data(), size))
            return false;
    }
}

bool fill(const Source &source, Descriptor &target)
{
    const int from = source.file.get();
    const int to = target.get();
    if (source.info.st_size > smallFile && !copyInSystem(from, to))
        return false;
    const std::array<timespec, 2> times{source.info.st_atim, source.info.st_mtim};
    return copyByHand(from, to) && fchmod(to, source.info.st_mode & 0777) == 0
           && futimens(to, times.data()) == 0 && target.close();
}

} // namespace

int openToCopy(int folder, const char *name)
{
    return openat(folder, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
}

void copyFileAt(Descriptor file, const QString &from, const FilePlace &to)
{
    const Source source = checkedSource(std::move(file), from);
    Descriptor target(openat(to.folder, to.name,
                             O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                             source.info.st_mode & 0777));
    if (!target.isOpen())
        raiseSystemError(errno, "The copy cannot be made"_L1, to.path, PathNotFound);
    if (fill(source, target))
        return;
    const int error = errno;
    unlinkat(to.folder, to.name, 0);
    raiseSystemError(error, "The copy cannot be written"_L1, to.path);
}
