#include "tools/FolderIndex.h"

FolderIndex::FolderIndex(FileSystem &files, QString root)
    : m_files(files)
    , m_root(std::move(root))
{
}

std::optional<FolderIndex::Entry> FolderIndex::find(const QString &relative)
{
    const qsizetype slash = relative.lastIndexOf(u'\\');
    if (slash < 0)
        return findIn({}, relative);
    const auto folder = find(relative.first(slash));
    if (!folder || folder->status.kind != FileKind::Folder)
        return std::nullopt;
    return findIn(folder->relative + u'\\', relative.sliced(slash + 1));
}

std::optional<FolderIndex::Entry> FolderIndex::findIn(const QString &folder, const QString &name)
{
    const FolderEntry *const entry = names(folder).find(name);
    if (!entry)
        return std::nullopt;
    return Entry{folder + entry->name, entry->status};
}

const FolderNames &FolderIndex::names(const QString &relativeFolder)
{
    const auto known = m_folders.constFind(relativeFolder);
    if (known != m_folders.constEnd())
        return *known;

    const QString path = m_root + relativeFolder;
    FolderNames names;
    if (m_files.folderExists(path))
        names = FolderNames(m_files.entries(path));
    return *m_folders.insert(relativeFolder, names);
}
