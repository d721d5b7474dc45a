#include "projectfiles/OpenMark.h"

#include "platform/Paths.h"
#include "platform/QvError.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

QString backupsOf(const QString &projectFolder)
{
    return projectFolder + ProjectFile::backupFolder + u'\\';
}

std::unique_ptr<FileLock> lockMark(FileSystem &files, const QString &path,
                                   const QString &projectFolder)
{
    return files.lock(path, projectFolder + ProjectFile::toc, std::chrono::milliseconds(0));
}

} // namespace

OpenMark::OpenMark(FileSystem &files, const QString &projectFolder)
    : m_files(files)
{
    const auto goOn = [](const QvError &) {}; // who may only read there disturbs nobody
    trap(goOn, [&] {
        const QString backups = backupsOf(projectFolder);
        if (!files.folderExists(backups))
            files.makeFolder(backups);
        for (int number = 1; !m_lock; ++number) {
            m_path = backups + u"Open-%1.lock"_s.arg(number);
            m_lock = lockMark(files, m_path, projectFolder);
        }
    });
}

OpenMark::~OpenMark()
{
    if (m_lock)
        trap([](const QvError &) {}, [this] { m_files.removeFile(m_path, true); }); // harmless
}

int countOpen(FileSystem &files, const QString &projectFolder)
{
    static const QRegularExpression mark(u"^Open-[0-9]+\\.lock$"_s);
    const QString backups = backupsOf(projectFolder);
    if (!files.folderExists(backups))
        return 0;
    int open = 0;
    for (const FolderEntry &entry : files.kinds(backups)) {
        if (!mark.match(entry.name).hasMatch())
            continue;
        const auto lock = lockMark(files, backups + entry.name, projectFolder);
        open += lock == nullptr;
        if (lock)
            files.removeFile(backups + entry.name, true);
    }
    return open;
}

bool isOpenAnywhere(FileSystem &files, const QString &projectFolder)
{
    return countOpen(files, projectFolder) > 0;
}
