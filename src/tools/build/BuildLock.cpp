#include "tools/build/BuildLock.h"

#include "platform/Paths.h"
#include "platform/QvError.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

std::unique_ptr<FileLock> lockBuild(FileSystem &files, const QString &folder)
{
    const QString backups = folder + ProjectFile::backupFolder;
    const QString path = backups + u"\\Build.lock"_s;
    bool isUsable = true;
    std::unique_ptr<FileLock> lock;
    trap([&](const QvError &) { isUsable = false; },
         [&] {
             if (!files.folderExists(backups))
                 files.makeFolder(backups);
             lock = files.lock(path, folder + ProjectFile::toc, std::chrono::seconds(1));
         });
    if (isUsable && !lock)
        throw QvError(PermissionDenied, {},
                      QCoreApplication::translate(
                          "BuildLock", "Another QV Developer builds or packs this project now. Try "
                                       "again when it has ended. The file that it holds is %1")
                          .arg(path));
    return lock;
}
