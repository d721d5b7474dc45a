#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>

#include <chrono>
#include <functional>
#include <memory>

class FileReader;
class FileWriter;

/// What stands at a path. Links and junctions are never followed: they are `Link`.
enum class FileKind { Missing, File, Folder, Link, Other };

struct FileStatus
{
    FileKind kind = FileKind::Missing;
    qint64 size = 0;
    QDateTime modified;    ///< UTC
    bool readOnly = false; ///< the file's own attribute or mode bits, whoever asks
};

struct FolderEntry
{
    QString name;
    FileStatus status;
};

/// The attribute bits of a file, in the classic numbering.
enum FileAttribute : int { ReadOnlyFile = 1, HiddenFile = 2, SystemFile = 4, ArchiveFile = 32 };

/// Held by one process at a time; released when destroyed or when the process dies.
class FileLock
{
public:
    FileLock() = default;
    FileLock(const FileLock &) = delete;
    FileLock &operator=(const FileLock &) = delete;
    virtual ~FileLock() = default;
};

struct ReplaceOptions
{
    /// Flush file and folder to the disk before returning. Off only inside a fresh folder that is
    /// synced as a whole (`syncTree`) before anything refers to it.
    bool sync = true;
    /// Write a read-only target all the same and keep its read-only bit. Only for copies of our
    /// own.
    bool throughReadOnly = false;
};

/// Against what a name that shall be free is held.
enum class NameCheck {
    AnyCase, ///< also against names in other letter case, which takes a look through the folder
    Exact,   ///< only as spelled: for many files at once, when the caller has looked through the
             ///< folder
};

/// The machine's files, under the product's paths: backslashes, drive letters, no regard to case
/// (the name as on disk first, then without regard to case; two such names are an error).
/// Every operation raises QvError with a description that names the path and the reason:
/// 53 no such file, 76 no such folder, 70 permission denied or disk full, 75 anything else.
/// Something counts as missing only when the system says that it is not there.
class FileSystem
{
public:
    virtual ~FileSystem() = default;

    [[nodiscard]] virtual FileStatus status(const QString &path) = 0;
    [[nodiscard]] bool fileExists(const QString &path)
    {
        return status(path).kind == FileKind::File;
    }
    [[nodiscard]] bool folderExists(const QString &path)
    {
        return status(path).kind == FileKind::Folder;
    }
    [[nodiscard]] bool exists(const QString &path)
    {
        return status(path).kind != FileKind::Missing;
    }

    /// The whole file; at most `limit` bytes when that is not negative. Regular files only.
    [[nodiscard]] virtual QByteArray readFile(const QString &path, qint64 limit = -1) = 0;

    /// Puts `content` in place of the file, or makes it: a temporary file beside it, written and
    /// flushed, then renamed over it. Refuses a target that is no regular file or is read-only.
    /// On failure the target is as it was and the temporary file is gone.
    virtual void replaceFile(const QString &path, const QByteArray &content,
                             ReplaceOptions options = {}) = 0;

    /// The same two piece by piece, for what is too large to be held in memory (FileStreams.h).
    [[nodiscard]] virtual std::unique_ptr<FileReader> openFile(const QString &path);
    [[nodiscard]] virtual std::unique_ptr<FileWriter> startFile(const QString &path,
                                                                ReplaceOptions options = {});

    /// Copies one regular file with its times and permissions to a name that is not taken.
    virtual void copyFile(const QString &from, const QString &to,
                          NameCheck check = NameCheck::AnyCase) = 0;

    /// Copies regular files of one folder into another under their names, which must not be taken
    /// there; much cheaper than one by one. The names are spelled as `entries` gives them. Calls
    /// `copied` after each, in the order given.
    virtual void copyFiles(const QString &fromFolder, const QString &toFolder,
                           const QStringList &names,
                           const std::function<void(const QString &name)> &copied)
    {
        for (const QString &name : names) {
            copyFile(fromFolder + u'\\' + name, toFolder + u'\\' + name);
            copied(name);
        }
    }

    /// Its parent must be there.
    virtual void makeFolder(const QString &path, NameCheck check = NameCheck::AnyCase) = 0;
    /// To a name that is not taken.
    virtual void move(const QString &from, const QString &to,
                      NameCheck check = NameCheck::AnyCase) = 0;
    virtual void removeFile(const QString &path, bool evenReadOnly = false) = 0;
    virtual void removeFolder(const QString &path) = 0; ///< an empty one

    /// Deletes files and links of one folder, read-only ones too; much cheaper than one by one.
    /// What is gone already counts as deleted. The names are spelled as `entries` gives them. Calls
    /// `removed` after each, in the order given.
    virtual void removeFiles(const QString &folder, const QStringList &names,
                             const std::function<void(const QString &name)> &removed)
    {
        for (const QString &name : names) {
            if (const QString path = folder + u'\\' + name; exists(path))
                removeFile(path, true);
            removed(name);
        }
    }

    /// What lies directly in a folder, in the order of names.
    [[nodiscard]] virtual QList<FolderEntry> entries(const QString &folder) = 0;
    /// The same, where of files and links only the kind is wanted; much cheaper.
    [[nodiscard]] virtual QList<FolderEntry> kinds(const QString &folder)
    {
        return entries(folder);
    }

    [[nodiscard]] virtual int attributes(const QString &path) = 0; ///< FileAttribute bits
    virtual void setAttributes(const QString &path, int attributes) = 0;

    virtual void syncFolder(const QString &folder) = 0;
    /// Flushes every file and folder below `folder`, and `folder` itself, to the disk.
    virtual void syncTree(const QString &folder) = 0;

    /// Waits for the operating-system lock on the file `path`, which is made when missing with the
    /// permissions of `like`. Null when another process held it all the time.
    [[nodiscard]] virtual std::unique_ptr<FileLock> lock(const QString &path, const QString &like,
                                                         std::chrono::milliseconds patience) = 0;

    /// The machine's own form of a product path, for tool tips, links and the command lines of
    /// other programs; and the product's form of a path that a file dialog returned.
    [[nodiscard]] virtual QString nativePath(const QString &path) = 0;
    [[nodiscard]] virtual QString productPath(const QString &native) = 0;
};
