#include "platform/portable/FolderReading.h"

#include "platform/portable/Descriptor.h"
#include "platform/portable/FileAttributes.h"
#include "platform/portable/SystemErrors.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr auto cannotRead = "The folder cannot be read"_L1;

struct CloseFolder
{
    void operator()(DIR *folder) const { closedir(folder); }
};

bool isDots(const char *name)
{
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

QString nameText(const char *bytes, const QString &folder)
{
    QString name = QString::fromUtf8(bytes);
    if (!QByteArrayView(bytes).isValidUtf8() || name.contains(u'\\'))
        raiseFileError(PathFileAccess,
                       QLatin1StringView("The folder holds a name that cannot be used"),
                       folder + u" ("_s + name + u')');
    return name;
}

/// Null at the end, with errno 0, and on errors.
const dirent *nextEntry(DIR *folder)
{
    errno = 0;
    return readdir(folder);
}

/// False with errno when the system does not say.
bool readStatus(int folder, const dirent &entry, Detail detail, FileStatus &status)
{
    const bool isPlain = entry.d_type == DT_REG || entry.d_type == DT_LNK;
    if (detail == Detail::KindOfFiles && isPlain) {
        status.kind = entry.d_type == DT_REG ? FileKind::File : FileKind::Link;
        return true;
    }
    struct stat info
    {
    };
    if (fstatat(folder, entry.d_name, &info, AT_SYMLINK_NOFOLLOW) != 0)
        return false;
    status = statusOf(info);
    return true;
}

} // namespace

QList<FolderEntry> readFolder(int folder, const QString &path, Detail detail)
{
    Descriptor own(openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const std::unique_ptr<DIR, CloseFolder> open(own.isOpen() ? fdopendir(own.get()) : nullptr);
    if (!open)
        raiseSystemError(errno, cannotRead, path, PathNotFound);
    (void)own.release(); // closed with the folder
    QList<FolderEntry> entries;
    while (const dirent *entry = nextEntry(open.get())) {
        if (isDots(entry->d_name))
            continue;
        FileStatus status;
        if (readStatus(folder, *entry, detail, status))
            entries.append({nameText(entry->d_name, path), status});
        else if (errno != ENOENT) // gone in the meantime
            raiseSystemError(errno, cannotRead, path, PathNotFound);
    }
    if (errno != 0)
        raiseSystemError(errno, cannotRead, path, PathNotFound);
    std::sort(entries.begin(), entries.end(),
              [](const FolderEntry &a, const FolderEntry &b) { return a.name < b.name; });
    return entries;
}

QByteArray nameBytes(const QString &name, const QString &folder)
{
    const bool dots = name == "."_L1 || name == ".."_L1;
    if (name.isEmpty() || dots || !name.isValidUtf16() || name.contains(u'\\')
        || name.contains(u'/') || name.contains(QChar(u'\0')))
        raiseFileError(PathFileAccess, "The name cannot be used"_L1, folder + name);
    return name.toUtf8();
}
