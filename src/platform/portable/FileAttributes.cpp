#include "platform/portable/FileAttributes.h"

#include <sys/stat.h>

#include <cerrno>

namespace {

constexpr mode_t writeBits = S_IWUSR | S_IWGRP | S_IWOTH;

FileKind kindOf(mode_t mode)
{
    if (S_ISREG(mode))
        return FileKind::File;
    if (S_ISDIR(mode))
        return FileKind::Folder;
    return S_ISLNK(mode) ? FileKind::Link : FileKind::Other;
}

/// Everyone who may read the file and change its folder may write it again.
mode_t withWriting(mode_t mode, mode_t folder)
{
    const bool everybody = (folder & S_IWOTH) != 0 && (folder & S_ISVTX) == 0;
    mode |= S_IWUSR;
    if ((mode & S_IRGRP) != 0 && (folder & S_IWGRP) != 0)
        mode |= S_IWGRP;
    if ((mode & S_IROTH) != 0 && everybody)
        mode |= S_IWOTH;
    return mode;
}

bool folderStatus(const char *native, struct stat &folder)
{
    const QByteArray path(native);
    return stat(path.first(path.lastIndexOf('/') + 1).constData(), &folder) == 0;
}

} // namespace

FileStatus statusOf(const struct stat &info)
{
    const FileKind kind = kindOf(info.st_mode);
    const qint64 time = info.st_mtim.tv_sec * qint64(1000) + info.st_mtim.tv_nsec / 1000000;
    return {kind, kind == FileKind::File ? info.st_size : 0,
            QDateTime::fromMSecsSinceEpoch(time, Qt::UTC),
            kind != FileKind::Link && (info.st_mode & S_IWUSR) == 0};
}

int setAttributesAt(const char *native, int attributes)
{
    struct stat file
    {
    };
    struct stat folder
    {
    };
    if (lstat(native, &file) != 0 || !folderStatus(native, folder))
        return -1;
    if (S_ISLNK(file.st_mode)) {
        errno = ELOOP;
        return -1;
    }
    const bool readOnly = (attributes & ReadOnlyFile) != 0;
    if (readOnly == ((file.st_mode & S_IWUSR) == 0))
        return 0;
    const mode_t old = file.st_mode & 07777;
    return chmod(native, readOnly ? old & ~writeBits : withWriting(old, folder.st_mode));
}
