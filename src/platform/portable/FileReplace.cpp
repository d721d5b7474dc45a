#include "platform/portable/FileReplace.h"

#include "platform/portable/Descriptor.h"
#include "platform/portable/SystemErrors.h"
#include "platform/portable/TemporaryFile.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr auto cannotWrite = "The file cannot be written"_L1;

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

int openFolderOf(const QByteArray &place)
{
    const qsizetype slash = place.lastIndexOf('/');
    return open(place.first(slash + 1).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
}

QByteArray nameOf(const QByteArray &place)
{
    return place.sliced(place.lastIndexOf('/') + 1);
}

/// A file of an open folder on its way to being replaced.
class Replacement final : public FileWriter
{
public:
    using Old = std::optional<struct stat>;

    Replacement(Descriptor folder, QByteArray name, const Old &old, QString path,
                ReplaceOptions options)
        : m_folder(std::move(folder))
        , m_name(std::move(name))
        , m_path(std::move(path))
        , m_options(options)
        , m_file(m_folder.get(), m_name, old ? old->st_mode & 0777 : 0666, m_path)
    {
        if (old)
            m_file.takePermissions(*old);
    }

    void write(qint64 offset, const char *bytes, qint64 count) override
    {
        m_file.write(offset, bytes, count);
    }

    void putInPlace() override
    {
        m_file.putInPlace(m_name.constData(), m_options.sync);
        if (m_options.sync && !syncFolderAt(m_folder.get()))
            raiseSystemError(
                errno, "The file is written, but its folder could not be flushed to the disk"_L1,
                m_path);
    }

private:
    Descriptor m_folder;
    QByteArray m_name;
    QString m_path;
    ReplaceOptions m_options;
    TemporaryFile m_file;
};

void fill(FileWriter &file, const QByteArray &content)
{
    file.write(0, content.constData(), content.size());
    file.putInPlace();
}

} // namespace

std::unique_ptr<FileWriter> startReplacingAt(const QByteArray &place, const QString &path,
                                             ReplaceOptions options)
{
    Descriptor folder(openFolderOf(place));
    if (!folder.isOpen())
        raiseSystemError(errno, cannotWrite, path, PathNotFound);
    const QByteArray name = nameOf(place);
    const auto old = replaceable(folder.get(), name.constData(), path, options);
    return std::make_unique<Replacement>(std::move(folder), name, old, path, options);
}

void replaceFileAt(const QByteArray &place, const QString &path, const QByteArray &content,
                   ReplaceOptions options)
{
    fill(*startReplacingAt(place, path, options), content);
}

bool replaceThereAt(const QByteArray &place, const QString &path, const QByteArray &content,
                    ReplaceOptions options)
{
    Descriptor folder(openFolderOf(place));
    if (!folder.isOpen())
        return false;
    const QByteArray name = nameOf(place);
    const auto old = replaceable(folder.get(), name.constData(), path, options);
    if (!old)
        return false;
    Replacement file(std::move(folder), name, old, path, options);
    fill(file, content);
    return true;
}

bool syncFolderAt(int folder)
{
    return fsync(folder) == 0 || errno == EINVAL; // EINVAL: this disk cannot flush folders
}
