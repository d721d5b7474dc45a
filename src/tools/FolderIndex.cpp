#include "tools/FolderIndex.h"

#include <QStringList>

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
    const Listing &here = listing(folder);
    QString spelling = name;
    if (!here.byName.contains(name)) {
        const QStringList spellings = here.spellings.values(name.toCaseFolded());
        if (spellings.size() != 1)
            return std::nullopt;
        spelling = spellings.first();
    }
    return Entry{folder + spelling, here.byName.value(spelling)};
}

const FolderIndex::Listing &FolderIndex::listing(const QString &relativeFolder)
{
    const auto known = m_listings.constFind(relativeFolder);
    if (known != m_listings.constEnd())
        return *known;

    Listing listing;
    const QString path = m_root + relativeFolder;
    if (m_files.folderExists(path)) {
        for (const FolderEntry &entry : m_files.entries(path)) {
            listing.byName.insert(entry.name, entry.status);
            listing.spellings.insert(entry.name.toCaseFolded(), entry.name);
        }
    }
    return *m_listings.insert(relativeFolder, listing);
}
