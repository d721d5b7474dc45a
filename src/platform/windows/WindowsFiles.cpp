#include "platform/windows/WindowsFiles.h"

#include "platform/FileStreams.h"
#include "platform/Paths.h"
#include "platform/TreeWalker.h"
#include "platform/windows/WindowsErrors.h"
#include "platform/windows/win32/FileChanges.h"
#include "platform/windows/win32/FileLock.h"
#include "platform/windows/win32/Files.h"
#include "platform/windows/win32/Replacement.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace {

constexpr auto cannotRead = "The file cannot be read"_L1;
constexpr auto cannotReadFolder = "The folder cannot be read"_L1;
constexpr auto cannotWrite = "The file cannot be written"_L1;
constexpr auto cannotDelete = "The file cannot be deleted"_L1;
constexpr auto cannotLock = "The lock file cannot be used"_L1;
constexpr int productAttributes = ReadOnlyFile | HiddenFile | SystemFile | ArchiveFile;

FileStatus statusOf(const win32::Status &found)
{
    constexpr FileKind kinds[] = {FileKind::Missing, FileKind::File, FileKind::Folder,
                                  FileKind::Link};
    const FileKind kind = kinds[size_t(found.kind)];
    if (kind == FileKind::Missing)
        return {};
    // The attribute of a folder means something else: nothing keeps anybody from changing it.
    return {kind, found.size, QDateTime::fromMSecsSinceEpoch(found.modified, Qt::UTC),
            kind == FileKind::File && found.isReadOnly()};
}

class OpenedFile final : public FileReader
{
public:
    OpenedFile(win32::Handle file, qint64 size, QString path)
        : m_file(std::move(file))
        , m_size(size)
        , m_path(std::move(path))
    {
    }

    qint64 size() const override { return m_size; }
    qint64 read(qint64 offset, char *to, qint64 count) const override
    {
        return explained(cannotRead, m_path,
                         [&] { return win32::readAt(m_file.get(), offset, to, count); });
    }

private:
    win32::Handle m_file;
    qint64 m_size;
    QString m_path;
};

class StartedFile final : public FileWriter
{
public:
    StartedFile(const std::wstring &native, QString path, win32::ReplaceOptions options)
        : m_path(std::move(path))
        , m_file(native, options)
    {
    }

    void write(qint64 offset, const char *bytes, qint64 count) override
    {
        explained(cannotWrite, m_path, [&] { m_file.write(offset, bytes, count); });
    }
    void putInPlace() override
    {
        explained(cannotWrite, m_path, [&] { m_file.putInPlace(); });
    }

private:
    QString m_path;
    win32::Replacement m_file;
};

class HeldLock final : public FileLock
{
public:
    explicit HeldLock(win32::Handle file)
        : m_file(std::move(file))
    {
    }

private:
    win32::Handle m_file;
};

} // namespace

WindowsFiles::WindowsFiles(const QString &drivesFolder)
    : m_paths(drivesFolder)
{
}

/// What "not there" means for a file: 53, or 76 when its folder is missing too.
int WindowsFiles::missingNumber(const QString &path)
{
    return folderExists(withoutBackslash(parentFolder(path))) ? FileNotFound : PathNotFound;
}

FileStatus WindowsFiles::status(const QString &path)
{
    return explained(cannotRead, path,
                     [&] { return statusOf(win32::status(m_paths.native(path))); });
}

std::unique_ptr<FileReader> WindowsFiles::openFile(const QString &path)
{
    try {
        std::int64_t size = 0;
        win32::Handle file = win32::openToRead(m_paths.native(path), size);
        return std::make_unique<OpenedFile>(std::move(file), size, path);
    } catch (const win32::Error &error) {
        if (error.code == ERROR_NOT_SUPPORTED)
            raiseFileError(PathFileAccess, "The file cannot be read, it is no ordinary file"_L1,
                           path);
        const bool isMissing = error.code == ERROR_FILE_NOT_FOUND;
        raiseSystemError(error.code, cannotRead, path,
                         isMissing ? missingNumber(path) : FileNotFound);
    }
}

QByteArray WindowsFiles::readFile(const QString &path, qint64 limit)
{
    const auto file = openFile(path);
    QByteArray content;
    content.resize(limit < 0 ? file->size() : qMin(limit, file->size()));
    content.truncate(file->read(0, content.data(), content.size()));
    return content;
}

std::unique_ptr<FileWriter> WindowsFiles::startFile(const QString &path, ReplaceOptions options)
{
    const FileStatus old = status(path);
    if (old.kind == FileKind::Folder)
        raiseFileError(PathFileAccess, "The file cannot be written, it is no ordinary file"_L1,
                       path);
    if (old.readOnly && !options.throughReadOnly)
        raiseFileError(PermissionDenied, "The file cannot be written, it is read-only"_L1, path);
    return explained(
        cannotWrite, path,
        [&] {
            return std::make_unique<StartedFile>(
                m_paths.native(path), path,
                win32::ReplaceOptions{options.sync, options.throughReadOnly});
        },
        PathNotFound);
}

void WindowsFiles::replaceFile(const QString &path, const QByteArray &content,
                               ReplaceOptions options)
{
    const auto file = startFile(path, options);
    file->write(0, content.constData(), content.size());
    file->putInPlace();
}

void WindowsFiles::copyFile(const QString &from, const QString &to, NameCheck)
{
    const FileKind kind = status(from).kind;
    if (kind == FileKind::Folder)
        raiseFileError(PathFileAccess, "The file cannot be copied, it is no ordinary file"_L1,
                       from);
    if (kind == FileKind::Missing)
        raiseSystemError(ERROR_FILE_NOT_FOUND, "The file cannot be copied"_L1, from,
                         missingNumber(from));
    if (kind == FileKind::Link)
        raiseSystemError(ERROR_CANT_ACCESS_FILE, "The file cannot be copied"_L1, from);
    explained(
        "The copy cannot be made"_L1, to,
        [&] { win32::copyFile(m_paths.native(from), m_paths.native(to)); }, PathNotFound);
}

void WindowsFiles::makeFolder(const QString &path, NameCheck)
{
    const std::wstring native = m_paths.native(path);
    if (m_paths.isMappedDrive(native)) {
        if (!QDir().mkpath(QString::fromStdWString(native)))
            raiseFileError(PathFileAccess, "The folder for the drive cannot be made"_L1, path);
        return;
    }
    explained(
        "The folder cannot be made"_L1, path, [&] { win32::makeFolder(native); }, PathNotFound);
}

void WindowsFiles::move(const QString &from, const QString &to, NameCheck)
{
    constexpr auto cannotMove = "The name cannot be changed"_L1;
    const FileKind kind = status(from).kind;
    if (kind == FileKind::Missing)
        raiseSystemError(ERROR_FILE_NOT_FOUND, cannotMove, from, missingNumber(from));
    const auto moveIt = [&] {
        try {
            win32::move(m_paths.native(from), m_paths.native(to));
        } catch (const win32::Error &error) {
            if (error.code != ERROR_ACCESS_DENIED || kind != FileKind::Folder)
                throw;
            throw QvError(PermissionDenied, {},
                          cannotMove
                              + u": %1 (A file in it is open, or you may not change it)"_s.arg(to));
        }
    };
    explained(cannotMove, to, moveIt, PathNotFound);
}

void WindowsFiles::removeFile(const QString &path, bool evenReadOnly)
{
    const FileStatus file = status(path);
    if (file.kind == FileKind::Folder)
        raiseFileError(PathFileAccess, "The file cannot be deleted, it is a folder"_L1, path);
    if (file.kind == FileKind::Missing)
        raiseSystemError(ERROR_FILE_NOT_FOUND, cannotDelete, path, missingNumber(path));
    if (file.readOnly && !evenReadOnly)
        raiseFileError(PermissionDenied, "The file cannot be deleted, it is read-only"_L1, path);
    explained(cannotDelete, path, [&] { win32::removeFile(m_paths.native(path)); });
}

void WindowsFiles::removeFolder(const QString &path)
{
    explained(
        "The folder cannot be deleted"_L1, path, [&] { win32::removeFolder(m_paths.native(path)); },
        PathNotFound);
}

QList<FolderEntry> WindowsFiles::entries(const QString &folder)
{
    return explained(
        cannotReadFolder, folder,
        [&] {
            QList<FolderEntry> result;
            for (const win32::Entry &entry : win32::entries(m_paths.native(folder)))
                result.append({QString::fromStdWString(entry.name), statusOf(entry.status)});
            return result;
        },
        PathNotFound);
}

int WindowsFiles::attributes(const QString &path)
{
    const win32::Status found =
        explained(cannotRead, path, [&] { return win32::status(m_paths.native(path)); });
    if (found.kind == win32::Kind::Missing)
        raiseSystemError(ERROR_FILE_NOT_FOUND, cannotRead, path, missingNumber(path));
    return int(found.attributes) & productAttributes;
}

void WindowsFiles::setAttributes(const QString &path, int attributes)
{
    explained("The attributes cannot be changed"_L1, path, [&] {
        win32::setAttributes(m_paths.native(path), DWORD(attributes & productAttributes));
    });
}

void WindowsFiles::syncFolder(const QString &folder)
{
    explained(
        "The folder cannot be flushed to the disk"_L1, folder,
        [&] { win32::flushFolder(m_paths.native(folder)); }, PathNotFound);
}

void WindowsFiles::syncTree(const QString &folder)
{
    walkTree(*this, withoutBackslash(folder), [this](const TreeEntry &entry) {
        if (entry.status.kind == FileKind::Folder)
            syncFolder(entry.path);
        else if (entry.status.kind == FileKind::File)
            explained("The file cannot be flushed to the disk"_L1, entry.path,
                      [&] { win32::flushFile(m_paths.native(entry.path)); });
    });
    syncFolder(folder);
}

// The folder's access rights are those of the catalogue in it; a new file takes them over.
std::unique_ptr<FileLock> WindowsFiles::lock(const QString &path, const QString &,
                                             std::chrono::milliseconds patience)
{
    return explained(
        cannotLock, path,
        [&]() -> std::unique_ptr<FileLock> {
            auto file = win32::lockFile(m_paths.native(path), patience);
            return file ? std::make_unique<HeldLock>(std::move(*file)) : nullptr;
        },
        PathNotFound);
}

QString WindowsFiles::nativePath(const QString &path)
{
    return QString::fromStdWString(win32::asOnDisk(m_paths.native(path)));
}

QString WindowsFiles::productPath(const QString &native)
{
    return m_paths.product(native);
}
