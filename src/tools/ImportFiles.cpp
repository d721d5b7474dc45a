#include "tools/ImportFiles.h"

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "platform/TreeWalker.h"
#include "projectfiles/Backup.h"
#include "tools/FolderIndex.h"

#include <QSet>

using namespace Qt::StringLiterals;

namespace {

/// For taking things back: the first failure must not keep the rest from being tried.
template <typename Body>
bool succeeds(Body &&body) noexcept
{
    try {
        body();
        return true;
    } catch (...) {
        return false;
    }
}

} // namespace

ImportFiles::ImportFiles(FileSystem &files, QString projectFolder, QString bookFolder)
    : m_files(files)
    , m_projectFolder(std::move(projectFolder))
    , m_bookFolder(std::move(bookFolder))
{
    const QString backups = m_projectFolder + ProjectFile::backupFolder;
    makeFolder(backups);
    int number = 1;
    while (m_files.exists(backups + u"\\Import-"_s + QString::number(number)))
        ++number;
    m_staging = backups + u"\\Import-"_s + QString::number(number) + u'\\';
    m_files.makeFolder(withoutBackslash(m_staging));
}

QString ImportFiles::nextStaged()
{
    return m_staging + QString::number(++m_count);
}

void ImportFiles::stageCopy(const ImportItem &item)
{
    const QString staged = nextStaged();
    m_files.copyFile(item.source, staged, NameCheck::Exact);
    if (item.readOnly)
        m_files.setAttributes(staged, m_files.attributes(staged) & ~ReadOnlyFile);
    note(staged, item);
}

void ImportFiles::stageContent(const ImportItem &item, const QByteArray &content)
{
    const QString staged = nextStaged();
    m_files.replaceFile(staged, content, {.sync = false, .throughReadOnly = false});
    note(staged, item);
}

void ImportFiles::note(const QString &staged, const ImportItem &item)
{
    m_staged.append(
        {staged, m_bookFolder + item.destination(), item.action == ImportAction::Replace});
}

int ImportFiles::putInPlace()
{
    m_files.syncTree(withoutBackslash(m_staging));
    for (const Move &staged : std::as_const(m_staged)) {
        if (staged.replaces && m_files.status(staged.to).readOnly)
            throw QvError(PermissionDenied, {}, u"The file %1 is locked"_s.arg(staged.to));
        if (staged.replaces)
            backUp(m_files, m_projectFolder, staged.to.sliced(m_projectFolder.size()));
    }
    refuseTakenNames();
    int replaced = 0;
    QSet<QString> folders;
    for (const Move &staged : std::as_const(m_staged)) {
        makeTargetFolders(staged.to);
        if (staged.replaces && m_files.exists(staged.to)) {
            move(staged.to, nextStaged());
            ++replaced;
        }
        move(staged.from, staged.to);
        folders.insert(withoutBackslash(parentFolder(staged.to)));
    }
    for (const QString &folder : std::as_const(folders))
        m_files.syncFolder(folder);
    return replaced;
}

// In any letter case; each folder is looked through once.
void ImportFiles::refuseTakenNames()
{
    FolderIndex book(m_files, m_bookFolder);
    for (const Move &staged : std::as_const(m_staged)) {
        if (!staged.replaces && book.find(staged.to.sliced(m_bookFolder.size())))
            throw QvError(PathFileAccess, {},
                          u"There is a file of this name meanwhile: "_s + staged.to);
    }
}

void ImportFiles::finish()
{
    deleteTree(m_files, withoutBackslash(m_staging));
}

void ImportFiles::undo() noexcept
{
    bool all = true;
    for (auto done = m_done.crbegin(); done != m_done.crend(); ++done)
        all &= succeeds([&] { m_files.move(done->to, done->from, NameCheck::Exact); });
    if (all)
        succeeds([this] { finish(); });
    for (auto folder = m_made.crbegin(); folder != m_made.crend(); ++folder)
        succeeds([&] { m_files.removeFolder(*folder); }); // stays when something lies in it
}

void ImportFiles::move(const QString &from, const QString &to)
{
    m_files.move(from, to, NameCheck::Exact);
    m_done.append({from, to});
}

void ImportFiles::makeFolder(const QString &folder)
{
    if (m_there.contains(folder))
        return;
    m_there.insert(folder);
    if (m_files.folderExists(folder))
        return;
    m_files.makeFolder(folder);
    m_made.append(folder);
}

void ImportFiles::makeTargetFolders(const QString &target)
{
    const QString folder = withoutBackslash(parentFolder(target));
    if (m_there.contains(folder))
        return;
    for (qsizetype slash = target.indexOf(u'\\', m_projectFolder.size()); slash >= 0;
         slash = target.indexOf(u'\\', slash + 1))
        makeFolder(target.first(slash));
}
