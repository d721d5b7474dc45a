#include "tools/FileBelow.h"

#include "platform/Paths.h"

std::optional<QByteArray> readFileBelow(FileSystem &files, const QString &folder,
                                        const QString &relative, qint64 limit)
{
    if (folder.isEmpty() || !insideOf(folder, relative))
        return std::nullopt;
    FileStatus status = files.status(withoutBackslash(folder));
    QString path = folder;
    for (const QString &piece : QString(relative).replace(u'/', u'\\').split(u'\\')) {
        if (status.kind != FileKind::Folder) // links lead elsewhere
            return std::nullopt;
        path = withBackslash(path) + piece;
        status = files.status(path);
    }
    if (status.kind != FileKind::File || status.size > limit)
        return std::nullopt;
    return files.readFile(path);
}
