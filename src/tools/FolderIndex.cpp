#include "tools/FolderIndex.h"

FolderIndex::FolderIndex(FileSystem &files, QString root)
    : m_files(files)
    , m_root(std::move(root))
{
}

std::optional<FolderIndex::Entry> FolderIndex::find(const QString &relative)
{
    QString folder;
    qsizetype begin = 0;
    for (;;) {
        const qsizetype slash = relative.indexOf(u'\\', begin);
        const qsizetype end = slash < 0 ? relative.size() : slash;
        const auto *const entry =
            names(folder).find(QStringView(relative).sliced(begin, end - begin));
        if (!entry)
            return std::nullopt;
        if (slash < 0)
            return Entry{folder + entry->name, entry->status};
        if (entry->status.kind != FileKind::Folder)
            return std::nullopt;
        folder += entry->name + u'\\';
        begin = slash + 1;
    }
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
