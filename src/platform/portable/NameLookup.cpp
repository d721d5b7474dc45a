#include "platform/portable/NameLookup.h"

#include "platform/portable/SystemErrors.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

struct CloseFolder
{
    void operator()(DIR *folder) const { closedir(folder); }
};

bool isThere(const QByteArray &native)
{
    struct stat info
    {
    };
    return lstat(native.constData(), &info) == 0;
}

/// Compares names with one wanted name; most candidates are dismissed without being decoded.
class WantedName final
{
public:
    explicit WantedName(QByteArrayView name)
        : m_name(name)
        , m_folded(QString::fromUtf8(name).toCaseFolded())
        , m_ascii(isAscii(name))
    {
    }

    [[nodiscard]] bool fits(QByteArrayView name) const
    {
        if (m_ascii && isAscii(name))
            return name.size() == m_name.size() && name.compare(m_name, Qt::CaseInsensitive) == 0;
        return QString::fromUtf8(name).toCaseFolded() == m_folded;
    }

private:
    static bool isAscii(QByteArrayView name)
    {
        return std::all_of(name.begin(), name.end(), [](char c) { return (c & 0x80) == 0; });
    }

    QByteArrayView m_name;
    QString m_folded;
    bool m_ascii;
};

[[noreturn]] void raiseTwoNames(const QByteArray &one, const char *other, const QString &path)
{
    throw QvError(PathFileAccess, {},
                  u"Two names differ only in their capitals, \""_s + QString::fromUtf8(one)
                      + u"\" and \""_s + QString::fromUtf8(other) + u"\": "_s + path);
}

/// Null at the end, with errno 0, and on errors.
const dirent *nextEntry(DIR *folder)
{
    errno = 0;
    return readdir(folder);
}

QByteArray nameInFolder(const QByteArray &folder, QByteArrayView name, const QString &path)
{
    const std::unique_ptr<DIR, CloseFolder> open(opendir(folder.constData()));
    if (!open && (errno == ENOTDIR || errno == ENOENT))
        return {};
    if (!open)
        raiseSystemError(errno, "The folder cannot be read"_L1, path, PathNotFound);
    const WantedName wanted(name);
    QByteArray found;
    while (const dirent *entry = nextEntry(open.get())) {
        if (!wanted.fits(entry->d_name))
            continue;
        if (!found.isEmpty())
            raiseTwoNames(found, entry->d_name, path);
        found = entry->d_name;
    }
    if (errno != 0)
        raiseSystemError(errno, "The folder cannot be read"_L1, path, PathNotFound);
    return found;
}

} // namespace

std::optional<QByteArray> findAnyCase(const QByteArray &native, const QString &path)
{
    if (isThere(native))
        return native;
    const qsizetype slash = native.lastIndexOf('/');
    if (slash <= 0 && native.size() <= 1)
        return std::nullopt;
    const auto folder = findAnyCase(slash > 0 ? native.first(slash) : "/"_ba, path);
    if (!folder || slash + 1 == native.size())
        return folder;
    const QByteArray name = nameInFolder(*folder, QByteArrayView(native).sliced(slash + 1), path);
    if (name.isEmpty())
        return std::nullopt;
    return *folder + '/' + name;
}

QByteArray placeAnyCase(const QByteArray &native, const QString &path)
{
    if (isThere(native))
        return native;
    const qsizetype slash = native.lastIndexOf('/');
    const auto folder = findAnyCase(slash > 0 ? native.first(slash) : "/"_ba, path);
    if (!folder)
        raiseSystemError(ENOENT, "The folder is not there"_L1, path, PathNotFound);
    const QByteArrayView wanted = QByteArrayView(native).sliced(slash + 1);
    const QByteArray name = nameInFolder(*folder, wanted, path);
    return *folder + '/' + (name.isEmpty() ? wanted.toByteArray() : name);
}
