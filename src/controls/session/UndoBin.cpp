#include "controls/session/UndoBin.h"

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "platform/TreeWalker.h"
#include "projectfiles/changes/ChangePlan.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

QString backupsOf(const QString &projectFolder)
{
    return projectFolder + ProjectFile::backupFolder + u'\\';
}

/// Null when its session lives.
std::unique_ptr<FileLock> lockBin(FileSystem &files, const QString &backups, const QString &name,
                                  const QString &like)
{
    return files.lock(backups + name + u".lock"_s, like, std::chrono::milliseconds(0));
}

/// Needs the lock of the bin. The lock file goes last.
void removeBin(FileSystem &files, const QString &backups, const QString &name)
{
    if (files.folderExists(backups + name))
        deleteTree(files, backups + name);
    if (files.exists(backups + name + u".lock"_s))
        files.removeFile(backups + name + u".lock"_s, true);
}

/// The bins of a folder, and those of which only the lock is left.
QStringList binsIn(FileSystem &files, const QString &backups)
{
    static const QRegularExpression bin(u"^((?:Undo|Import)-[0-9]+)(?:\\.lock)?$"_s);
    QStringList names;
    for (const FolderEntry &entry : files.kinds(backups)) {
        if (const auto match = bin.match(entry.name); match.hasMatch())
            names.append(match.captured(1));
    }
    names.removeDuplicates();
    return names;
}

bool isNeeded(FileSystem &files, const QString &projectFolder)
{
    return ChangePlan::isAnyLeft(files, projectFolder);
}

} // namespace

UndoBin::UndoBin(FileSystem &files)
    : m_files(files)
{
}

QString UndoBin::place(const QString &projectFolder, const QString &name)
{
    const QString backups = backupsOf(projectFolder);
    if (!m_files.folderExists(backups))
        m_files.makeFolder(backups);
    if (m_name.isEmpty())
        take(backups, projectFolder + ProjectFile::toc);
    const QString place = backups + m_name + u'\\' + QString::number(++m_count);
    m_files.makeFolder(place);
    return place + u'\\' + name;
}

void UndoBin::take(const QString &backups, const QString &like)
{
    for (int number = 1; m_name.isEmpty(); ++number) {
        const QString name = u"Undo-%1"_s.arg(number);
        if (m_files.exists(backups + name))
            continue;
        auto lock = lockBin(m_files, backups, name, like);
        if (!lock || m_files.exists(backups + name))
            continue; // another session was faster
        m_files.makeFolder(backups + name);
        m_lock = std::move(lock);
        m_name = name;
    }
}

void UndoBin::takeHold(const QString &projectFolder)
{
    if (!m_name.isEmpty())
        m_lock =
            lockBin(m_files, backupsOf(projectFolder), m_name, projectFolder + ProjectFile::toc);
}

void UndoBin::empty(const QString &projectFolder)
{
    trap([](const QvError &) {},
         [&] {
             if (!m_name.isEmpty() && !isNeeded(m_files, projectFolder))
                 removeBin(m_files, backupsOf(projectFolder), m_name);
         });
    m_lock.reset();
    m_name.clear();
    m_count = 0;
}

void removeDeadBins(FileSystem &files, const QString &projectFolder)
{
    const QString backups = backupsOf(projectFolder);
    if (!files.folderExists(backups) || isNeeded(files, projectFolder))
        return;
    for (const QString &name : binsIn(files, backups)) {
        trap([](const QvError &) {},
             [&] {
                 if (const auto lock =
                         lockBin(files, backups, name, projectFolder + ProjectFile::toc))
                     removeBin(files, backups, name);
             });
    }
    ChangePlan::removeStrayData(files, projectFolder);
    removeLeftovers(files, backups);
    removeAbandoned(files, backups, {});
}
