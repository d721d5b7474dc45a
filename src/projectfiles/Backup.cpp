#include "projectfiles/Backup.h"

#include "platform/Paths.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int versionsKept = 5;

void makeFolders(FileSystem &files, const QString &base, const QString &relativeFolder)
{
    QString folder = base;
    for (const QString &piece : relativeFolder.split(u'\\', Qt::SkipEmptyParts)) {
        folder += piece + u'\\';
        if (!files.folderExists(folder))
            files.makeFolder(folder);
    }
}

/// The numbers of the versions "<name>.<n>" in a folder.
QList<int> versionsOf(FileSystem &files, const QString &folder, const QString &name)
{
    QList<int> versions;
    const QString prefix = name + u'.';
    for (const FolderEntry &entry : files.entries(folder)) {
        bool isNumber = false;
        const int number =
            QStringView(entry.name).sliced(qMin(prefix.size(), entry.name.size())).toInt(&isNumber);
        if (isNumber && entry.name.startsWith(prefix, Qt::CaseInsensitive))
            versions.append(number);
    }
    return versions;
}

} // namespace

// Nothing is renamed: at every moment each version is there as a whole or not at all.
void backUp(FileSystem &files, const QString &projectFolder, const QString &relativePath,
            const std::optional<QByteArray> &content)
{
    const QString current = projectFolder + relativePath;
    if (!content && !files.exists(current))
        return;

    const QString kept = ProjectFile::backupFolder + u"\\"_s + relativePath;
    makeFolders(files, projectFolder, parentFolder(kept));
    const QList<int> versions =
        versionsOf(files, projectFolder + parentFolder(kept), lastComponent(kept));
    const int newest = 1 + (versions.isEmpty() ? 0 : std::ranges::max(versions));
    const QString place = projectFolder + kept + u'.';
    files.replaceFile(place + QString::number(newest),
                      content ? *content : files.readFile(current));
    for (const int version : versions) {
        if (version <= newest - versionsKept)
            files.removeFile(place + QString::number(version), true);
    }
}
