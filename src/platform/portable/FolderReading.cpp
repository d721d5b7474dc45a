#include "platform/portable/FolderReading.h"

#include "platform/portable/Descriptor.h"
#include "platform/portable/FileAttributes.h"
#include "platform/portable/SystemErrors.h"

#include <QStringDecoder>

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
    QStringDecoder decoder(QStringDecoder::Utf8);
    QString name = decoder(QByteArrayView(bytes));
    if (decoder.hasError() || name.contains(u'\\'))
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

} // namespace

QList<FolderEntry> readFolder(int folder, const QString &path)
{
    Descriptor own(openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const std::unique_ptr<DIR, CloseFolder> open(own.isOpen() ? fdopendir(own.get()) : nullptr);
    if (!open)
        raiseSystemError(errno, cannotRead, path, PathNotFound);
    (void)own.release(); // closed with the folder
    QList<FolderEntry> entries;
    while (const dirent *entry = nextEntry(open.get())) {
        struct stat info
        {
        };
        if (isDots(entry->d_name))
            continue;
        if (fstatat(folder, entry->d_name, &info, AT_SYMLINK_NOFOLLOW) == 0)
            entries.append({nameText(entry->d_name, path), statusOf(info)});
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
