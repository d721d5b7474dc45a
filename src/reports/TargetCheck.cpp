#include "reports/TargetCheck.h"

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "reports/FolderPages.h"

namespace {

qsizetype nameBegin(QStringView path)
{
    qsizetype at = path.size();
    while (at > 0 && path[at - 1] != u'\\' && path[at - 1] != u'/')
        --at;
    return at;
}

} // namespace

TargetCheck::TargetCheck(FileSystem &files, const QString &docs)
    : m_files(files)
    , m_docs(docs)
    , m_canBeListed(files.folderExists(docs)) // or it is a link, as an administrator sets it
    , m_index(files, docs)
{
}

void TargetCheck::add(LinkPlaces &places)
{
    for (quint32 place = 0; place < places.size(); ++place) {
        const QString &path = places.path(place);
        const int folder = folderOf(path, nameBegin(path));
        if (folder != nowhere)
            m_folders[static_cast<size_t>(folder)].probes.push_back({&places, place});
    }
}

QString TargetCheck::folder(int number) const
{
    return withoutBackslash(m_folders[static_cast<size_t>(number)].path.sliced(m_docs.size()));
}

void TargetCheck::checkFolder(int number)
{
    const Folder &folder = m_folders[static_cast<size_t>(number)];
    FolderPages pages(m_files, folder.path);
    for (const Probe &probe : folder.probes) {
        const QStringView path = probe.places->path(probe.place);
        probe.places->setState(probe.place, pages.state(path.sliced(nameBegin(path))));
    }
}

int TargetCheck::folderOf(const QString &path, qsizetype nameBegin)
{
    const auto known = m_spellings.constFind(QString::fromRawData(path.data(), nameBegin));
    if (known != m_spellings.constEnd())
        return *known;
    const QString spelling = path.first(nameBegin);
    return *m_spellings.insert(spelling, folderAt(spelling));
}

int TargetCheck::folderAt(const QString &spelling)
{
    const std::optional<QString> path = insideOf(m_docs, spelling + u'x');
    if (!path)
        return nowhere;
    const std::optional<QString> real = realFolder(parentFolder(*path).sliced(m_docs.size()));
    if (!real)
        return nowhere;
    const auto known = m_numbers.constFind(*real);
    if (known != m_numbers.constEnd())
        return *known;
    m_folders.push_back({m_docs + *real, {}});
    return *m_numbers.insert(*real, folderCount() - 1);
}

/// The folder as it is spelled on disk, "" or ending in a backslash.
std::optional<QString> TargetCheck::realFolder(const QString &relative)
{
    if (relative.isEmpty())
        return relative;
    try {
        if (m_canBeListed) {
            const auto entry = m_index.find(withoutBackslash(relative));
            if (!entry || entry->status.kind != FileKind::Folder)
                return std::nullopt;
            return withBackslash(entry->relative);
        }
    } catch (const QvError &) {
        // A folder on the way cannot be listed, for one odd name in it perhaps. Not tried again.
        m_canBeListed = false;
    }
    if (!isFolder(relative))
        return std::nullopt;
    return relative;
}

bool TargetCheck::isFolder(const QString &relative) const
{
    try {
        qsizetype end = 0;
        while ((end = relative.indexOf(u'\\', end) + 1) > 0) {
            if (!m_files.folderExists(m_docs + relative.first(end)))
                return false;
        }
        return true;
    } catch (const QvError &) {
        return false; // its spelling fits two names, or nothing can be known about it
    }
}
