#include "platform/portable/PortableFiles.h"

#include "platform/Paths.h"
#include "platform/TreeWalker.h"
#include "platform/portable/Descriptor.h"
#include "platform/portable/FileAttributes.h"
#include "platform/portable/FileCopy.h"
#include "platform/portable/FileReading.h"
#include "platform/portable/FileReplace.h"
#include "platform/portable/FolderReading.h"
#include "platform/portable/NameLookup.h"
#include "platform/portable/RangeLock.h"
#include "platform/portable/SystemErrors.h"

#include <QDir>
#include <QSet>

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

constexpr auto cannotRead = "The file cannot be read"_L1;
constexpr auto cannotMove = "The name cannot be changed"_L1;
constexpr auto cannotDelete = "The file cannot be deleted"_L1;
constexpr auto cannotChange = "The attributes cannot be changed"_L1;

QByteArray folderOf(const QByteArray &native)
{
    return native.first(native.lastIndexOf('/') + 1);
}

int renameToFree(const char *from, const char *to)
{
    if (renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOSYS)
        return -1;
    struct stat info
    {
    }; // the disk cannot do both at once
    if (lstat(to, &info) == 0) {
        errno = EEXIST;
        return -1;
    }
    return rename(from, to);
}

/// Folded names that lie in a folder.
QSet<QString> takenNames(const QList<FolderEntry> &entries)
{
    QSet<QString> names;
    names.reserve(entries.size());
    for (const FolderEntry &entry : entries)
        names.insert(entry.name.toCaseFolded());
    return names;
}

} // namespace

PortableFiles::PortableFiles(const QString &drivesFolder)
    : m_paths(drivesFolder)
{
}

/// Runs a system call on the path as it is written and, only when that is not there, on the path
/// found without regard to case. -1 with errno when it fails.
template <typename Call>
int PortableFiles::onPath(const QString &path, Call call) const
{
    const QByteArray native = m_paths.native(path);
    const int result = call(native.constData());
    if (result != -1 || errno != ENOENT)
        return result;
    const std::optional<QByteArray> found = findAnyCase(native, path);
    if (found)
        return call(found->constData());
    errno = ENOENT;
    return -1;
}

QByteArray PortableFiles::place(const QString &path, NameCheck check) const
{
    const QByteArray native = m_paths.native(path);
    if (check == NameCheck::AnyCase)
        return placeAnyCase(native, path);
    const QByteArray folder = folderOf(native);
    struct stat info
    {
    };
    if (lstat(folder.constData(), &info) == 0)
        return native;
    const auto found = findAnyCase(folder.chopped(1), path);
    return found ? *found + native.sliced(folder.size() - 1) : native;
}

/// What "not there" means for a file: 53, or 76 when its folder is missing too.
int PortableFiles::missingNumber(const QString &path) const
{
    return findAnyCase(folderOf(m_paths.native(path)), path) ? FileNotFound : PathNotFound;
}

void PortableFiles::raise(int error, QLatin1StringView what, const QString &path) const
{
    raiseSystemError(error, what, path, error == ENOENT ? missingNumber(path) : FileNotFound);
}

int PortableFiles::openFolder(const QString &path) const
{
    const int folder = onPath(path, [](const char *native) {
        return open(native, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    });
    if (folder >= 0)
        return folder;
    const int error = errno;
    const bool link =
        error == ENOTDIR && onPath(path, [](const char *native) {
                                struct stat info
                                {
                                };
                                return lstat(native, &info) == 0 && S_ISLNK(info.st_mode) ? 0 : -1;
                            }) == 0;
    raiseSystemError(link ? ELOOP : error, "The folder cannot be read"_L1, path, PathNotFound);
}

FileStatus PortableFiles::status(const QString &path)
{
    struct stat info
    {
    };
    if (onPath(path, [&](const char *native) { return lstat(native, &info); }) == 0)
        return statusOf(info);
    if (errno != ENOENT && errno != ENOTDIR)
        raise(errno, cannotRead, path);
    return {};
}

Descriptor PortableFiles::openToRead(const QString &path, qint64 &size) const
{
    Descriptor file(onPath(path, [](const char *native) {
        return open(native, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    }));
    struct stat info
    {
    };
    if (!file.isOpen() || fstat(file.get(), &info) != 0)
        raise(errno, cannotRead, path);
    if (!S_ISREG(info.st_mode))
        raiseFileError(PathFileAccess, "The file cannot be read, it is no ordinary file"_L1, path);
    size = info.st_size;
    return file;
}

QByteArray PortableFiles::readFile(const QString &path, qint64 limit)
{
    qint64 size = 0;
    const Descriptor file = openToRead(path, size);
    QByteArray content;
    content.resize(limit < 0 ? size : qMin(limit, size));
    const qint64 got = readAt(file.get(), 0, content.data(), content.size());
    if (got < 0)
        raise(errno, cannotRead, path);
    content.truncate(got);
    return content;
}

std::unique_ptr<FileReader> PortableFiles::openFile(const QString &path)
{
    qint64 size = 0;
    Descriptor file = openToRead(path, size);
    return readerOf(std::move(file), size, path);
}

std::unique_ptr<FileWriter> PortableFiles::startFile(const QString &path, ReplaceOptions options)
{
    return startReplacingAt(placeAnyCase(m_paths.native(path), path), path, options);
}

void PortableFiles::replaceFile(const QString &path, const QByteArray &content,
                                ReplaceOptions options)
{
    const QByteArray native = m_paths.native(path);
    if (!replaceThereAt(native, path, content, options))
        replaceFileAt(placeAnyCase(native, path), path, content, options);
}

void PortableFiles::copyFile(const QString &from, const QString &to, NameCheck check)
{
    const QByteArray target = place(to, check);
    const int source =
        onPath(from, [](const char *native) { return openToCopy(AT_FDCWD, native); });
    copyFileAt(Descriptor(source), from, {AT_FDCWD, target.constData(), to});
}

void PortableFiles::copyFiles(const QString &fromFolder, const QString &toFolder,
                              const QStringList &names,
                              const std::function<void(const QString &name)> &copied)
{
    const Descriptor source(openFolder(fromFolder));
    const Descriptor target(openFolder(toFolder));
    const QString from = withBackslash(fromFolder);
    const QString to = withBackslash(toFolder);
    const QSet<QString> taken = takenNames(readFolder(target.get(), toFolder));
    for (const QString &name : names) {
        if (!taken.isEmpty() && taken.contains(name.toCaseFolded()))
            raiseSystemError(EEXIST, "The copy cannot be made"_L1, to + name);
        const QByteArray bytes = nameBytes(name, from);
        const QString copy = to + name;
        const QString original = from + name;
        copyFileAt(Descriptor(openToCopy(source.get(), bytes.constData())), original,
                   {target.get(), bytes.constData(), copy});
        copied(name);
    }
}

void PortableFiles::makeFolder(const QString &path, NameCheck check)
{
    const QByteArray native = m_paths.native(path);
    const QByteArray drive = m_paths.driveOf(native);
    if (!drive.isEmpty() && !QDir().mkpath(QString::fromUtf8(drive)))
        raiseSystemError(errno, "The folder for the drive cannot be made"_L1, path, PathNotFound);
    if (native == drive)
        return;
    if (mkdir(place(path, check).constData(), 0777) != 0)
        raiseSystemError(errno, "The folder cannot be made"_L1, path, PathNotFound);
}

void PortableFiles::move(const QString &from, const QString &to, NameCheck check)
{
    const QByteArray wanted = m_paths.native(to);
    QByteArray target = check == NameCheck::Exact ? wanted : placeAnyCase(wanted, to);
    const auto rename = [&](const char *source) {
        if (target == source) // only the capitals change
            target = folderOf(target) + wanted.sliced(wanted.lastIndexOf('/') + 1);
        return renameToFree(source, target.constData());
    };
    int result = onPath(from, rename);
    if (result != 0 && errno == ENOENT && check == NameCheck::Exact) {
        target = place(to, check); // its folder may be spelled differently
        result = onPath(from, rename);
    }
    if (result != 0 && errno == EEXIST)
        raiseSystemError(errno, cannotMove, to);
    if (result != 0)
        raise(errno, cannotMove, from);
}

void PortableFiles::removeFile(const QString &path, bool evenReadOnly)
{
    const FileStatus file = status(path);
    if (file.kind == FileKind::Folder)
        raiseFileError(PathFileAccess, "The file cannot be deleted, it is a folder"_L1, path);
    if (file.readOnly && !evenReadOnly)
        raiseFileError(PermissionDenied, "The file cannot be deleted, it is read-only"_L1, path);
    if (onPath(path, [](const char *native) { return unlink(native); }) != 0)
        raise(errno, cannotDelete, path);
}

void PortableFiles::removeFolder(const QString &path)
{
    if (onPath(path, [](const char *native) { return rmdir(native); }) != 0)
        raiseSystemError(errno, "The folder cannot be deleted"_L1, path, PathNotFound);
}

void PortableFiles::removeFiles(const QString &folder, const QStringList &names,
                                const std::function<void(const QString &name)> &removed)
{
    const Descriptor open(openFolder(folder));
    const QString base = withBackslash(folder);
    for (const QString &name : names) {
        const QByteArray bytes = nameBytes(name, base);
        if (unlinkat(open.get(), bytes.constData(), 0) != 0 && errno != ENOENT)
            raiseSystemError(errno, cannotDelete, base + name);
        removed(name);
    }
}

QList<FolderEntry> PortableFiles::entries(const QString &folder)
{
    const Descriptor open(openFolder(folder));
    return readFolder(open.get(), folder);
}

QList<FolderEntry> PortableFiles::kinds(const QString &folder)
{
    const Descriptor open(openFolder(folder));
    return readFolder(open.get(), folder, Detail::KindOfFiles);
}

int PortableFiles::attributes(const QString &path)
{
    const FileStatus found = status(path);
    if (found.kind == FileKind::Missing)
        raise(ENOENT, cannotRead, path);
    return found.readOnly ? ReadOnlyFile : 0;
}

void PortableFiles::setAttributes(const QString &path, int attributes)
{
    const auto change = [&](const char *native) { return setAttributesAt(native, attributes); };
    if (onPath(path, change) != 0)
        raise(errno, cannotChange, path);
}

void PortableFiles::syncFolder(const QString &folder)
{
    const Descriptor open(openFolder(folder));
    if (!syncFolderAt(open.get()))
        raiseSystemError(errno, "The folder cannot be flushed to the disk"_L1, folder);
}

// One call writes everything out at full speed. Then each file is asked, because only its own flush
// tells of what could not be written, and on some shares it is the only one that counts.
void PortableFiles::syncTree(const QString &folder)
{
    syncfs(Descriptor(openFolder(folder)).get());
    walkTree(*this, withoutBackslash(folder), [this](const TreeEntry &entry) {
        if (entry.status.kind == FileKind::Folder)
            syncFolder(entry.path);
        else if (entry.status.kind == FileKind::File)
            syncFile(entry.path);
    });
    syncFolder(folder);
}

void PortableFiles::syncFile(const QString &path) const
{
    const Descriptor file(onPath(path, [](const char *native) {
        return open(native, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    }));
    if (!file.isOpen() || fsync(file.get()) != 0)
        raiseSystemError(errno, "The file cannot be flushed to the disk"_L1, path);
}

std::unique_ptr<FileLock> PortableFiles::lock(const QString &path, const QString &like,
                                              std::chrono::milliseconds patience)
{
    const QByteArray native = m_paths.native(like);
    return lockFileAt(place(path), path, findAnyCase(native, like).value_or(native), patience);
}

QString PortableFiles::nativePath(const QString &path)
{
    const QByteArray native = m_paths.native(path);
    return QString::fromUtf8(findAnyCase(native, path).value_or(native));
}

QString PortableFiles::productPath(const QString &native)
{
    return m_paths.product(native);
}
