#include "tools/import/ImportFiles.h"

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "platform/TreeWalker.h"
#include "projectfiles/Backup.h"
#include "tools/FolderIndex.h"

using namespace Qt::StringLiterals;

ImportFiles::ImportFiles(FileSystem &files, QString projectFolder, QString bookFolder,
                         QString fresh)
    : m_files(files)
    , m_projectFolder(std::move(projectFolder))
    , m_bookFolder(std::move(bookFolder))
    , m_fresh(withBackslash(fresh))
{
    m_files.makeFolder(withoutBackslash(m_fresh));
}

// A new file is looked for in its folder in other capitals: few in each keep that short.
QString ImportFiles::nextStaged()
{
    constexpr int filesInAFolder = 100;
    const QString folder = m_fresh + QString::number(m_count / filesInAFolder);
    if (m_count++ % filesInAFolder == 0)
        m_files.makeFolder(folder);
    return folder + u'\\' + QString::number(m_count);
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
    const bool replaces = item.action == ImportAction::Replace;
    m_staged.append(
        {staged, m_bookFolder + item.destination(), replaces, replaces ? nextStaged() : QString()});
}

QList<FileStep> ImportFiles::steps()
{
    m_files.syncTree(withoutBackslash(m_fresh));
    backUpReplaced();
    refuseTakenNames();
    QList<FileStep> steps;
    const auto move = [&](const QString &from, const QString &to) {
        steps.append({.kind = FileStep::Kind::Move, .path = relative(from), .to = relative(to)});
    };
    for (const Staged &staged : std::as_const(m_staged)) {
        makeFolders(staged.to, steps);
        if (staged.replaces && m_files.exists(staged.to)) {
            move(staged.to, staged.aside);
            ++m_replaced;
        }
        move(staged.from, staged.to);
    }
    return steps;
}

void ImportFiles::backUpReplaced()
{
    for (const Staged &staged : std::as_const(m_staged)) {
        if (!staged.replaces)
            continue;
        if (m_files.status(staged.to).readOnly)
            throw QvError(PermissionDenied, {}, u"The file %1 is locked"_s.arg(staged.to));
        backUp(m_files, m_projectFolder, relative(staged.to));
    }
}

// In any letter case; each folder is looked through once.
void ImportFiles::refuseTakenNames()
{
    FolderIndex book(m_files, m_bookFolder);
    for (const Staged &staged : std::as_const(m_staged)) {
        if (!staged.replaces && book.find(staged.to.sliced(m_bookFolder.size())))
            throw QvError(PathFileAccess, {},
                          u"There is a file of this name meanwhile: "_s + staged.to);
    }
}

void ImportFiles::makeFolders(const QString &target, QList<FileStep> &steps)
{
    if (m_there.contains(parentFolder(target).toCaseFolded()))
        return;
    for (qsizetype slash = target.indexOf(u'\\', m_projectFolder.size()); slash >= 0;
         slash = target.indexOf(u'\\', slash + 1)) {
        const QString folder = target.first(slash);
        const QString key = withBackslash(folder).toCaseFolded();
        if (m_there.contains(key))
            continue;
        m_there.insert(key);
        if (!m_files.folderExists(folder))
            steps.append({.kind = FileStep::Kind::MakeFolder, .path = relative(folder)});
    }
}

QString ImportFiles::relative(const QString &path) const
{
    return path.sliced(m_projectFolder.size());
}

void ImportFiles::discard() noexcept
{
    // What cannot be deleted now goes with the folder it lies in.
    try {
        deleteTree(m_files, withoutBackslash(m_fresh));
    } catch (...) {
    }
}
