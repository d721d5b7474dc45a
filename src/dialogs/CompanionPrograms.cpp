#include "dialogs/CompanionPrograms.h"

#include "platform/FileSystem.h"
#include "platform/Paths.h"
#include "platform/TreeWalker.h"
#include "startup/HelpFolder.h"

using namespace Qt::StringLiterals;

namespace {

bool isCompanion(const FolderEntry &entry)
{
    static const QStringList programs{u"StartApp"_s, u"QV_IBLIndexMgr"_s, u"qvdev"_s,
                                      u"qv_dbtoxml"_s};
    static const QStringList plugins{u"platforms"_s, u"styles"_s, u"imageformats"_s};
    if (entry.status.kind == FileKind::Folder)
        return plugins.contains(entry.name, Qt::CaseInsensitive);
    const QString plain =
        entry.name.endsWith(".exe"_L1, Qt::CaseInsensitive) ? entry.name.chopped(4) : entry.name;
    return entry.status.kind == FileKind::File
           && (programs.contains(plain, Qt::CaseInsensitive)
               || entry.name.endsWith(".dll"_L1, Qt::CaseInsensitive));
}

// Removed, not written over: the program may run at this moment.
void renewFile(FileSystem &files, const QString &from, const FileStatus &now, const QString &to)
{
    const FileStatus before = files.status(to);
    if (before.kind == FileKind::File && before.size == now.size && before.modified == now.modified)
        return;
    if (before.kind != FileKind::Missing)
        files.removeFile(to, true);
    files.copyFile(from, to);
}

void renewFolder(FileSystem &files, const QString &from, const QString &to)
{
    const auto makeFolder = [&](const QString &folder) {
        if (!files.folderExists(folder))
            files.makeFolder(folder);
    };
    makeFolder(to);
    walkTree(files, from, [&](const TreeEntry &entry) {
        const QString target = to + u'\\' + entry.relative;
        if (entry.status.kind == FileKind::Folder)
            makeFolder(target);
        else if (entry.status.kind == FileKind::File)
            renewFile(files, entry.path, entry.status, target);
    });
}

} // namespace

void copyCompanions(FileSystem &files, const QString &programFolder, const QString &bin)
{
    const QString from = withBackslash(files.productPath(programFolder));
    for (const FolderEntry &entry : files.entries(withoutBackslash(from))) {
        if (!isCompanion(entry))
            continue;
        if (entry.status.kind == FileKind::Folder)
            renewFolder(files, from + entry.name, bin + entry.name);
        else
            renewFile(files, from + entry.name, entry.status, bin + entry.name);
    }
    if (const QString help = findHelpFolder(files, {}, programFolder); !help.isEmpty())
        renewFolder(files, withoutBackslash(help), bin + u"help"_s);
}
