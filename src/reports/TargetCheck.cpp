#include "reports/TargetCheck.h"

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "tools/FolderNames.h"

using State = LinkPlaces::State;

namespace {

/// The pages of one folder as link targets. Each is opened at most once, and only when it is asked
/// for.
class FolderPages final
{
public:
    /// `path` is the path of a real folder and ends in a backslash.
    FolderPages(FileSystem &files, const QString &path);

    /// Missing: no file has that name. Bad: it is empty, its first line is, or it cannot be opened.
    State state(QStringView name);

private:
    [[nodiscard]] State test(const QString &name, const FileStatus &status) const;
    [[nodiscard]] State unlisted(const QString &name) const;

    FileSystem &m_files;
    QString m_path;
    bool m_isListed = false;
    FolderNames m_names;
    QHash<QString, State> m_known; ///< by the name on disk
};

FolderPages::FolderPages(FileSystem &files, const QString &path)
    : m_files(files)
    , m_path(path)
{
    try {
        m_names = FolderNames(files.entries(path));
        m_isListed = true;
    } catch (const QvError &) {
        // It holds a name that cannot be said, perhaps: its files are then asked for one by one.
    }
}

State FolderPages::state(QStringView name)
{
    const FolderEntry *const entry = m_names.find(name);
    if (m_isListed && !entry)
        return State::Missing;
    const QString key = entry ? entry->name : name.toString();
    const auto known = m_known.constFind(key);
    if (known != m_known.constEnd())
        return *known;
    return *m_known.insert(key, entry ? test(key, entry->status) : unlisted(key));
}

State FolderPages::test(const QString &name, const FileStatus &status) const
{
    const std::optional<QString> path = insideOf(m_path, name);
    if (status.kind != FileKind::File || !path)
        return State::Missing;
    if (status.size == 0)
        return State::Bad;
    try {
        const QByteArray first = m_files.readFile(*path, 1);
        return first.isEmpty() || first == "\r" || first == "\n" ? State::Bad : State::Good;
    } catch (const QvError &) {
        return State::Bad;
    }
}

State FolderPages::unlisted(const QString &name) const
{
    try {
        const std::optional<QString> path = insideOf(m_path, name);
        return path ? test(name, m_files.status(*path)) : State::Missing;
    } catch (const QvError &) {
        return State::Bad; // its spelling fits two names, or nothing can be known about it
    }
}

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

void TargetCheck::checkFolder(int number, const std::stop_token &stop)
{
    const Folder &folder = m_folders[static_cast<size_t>(number)];
    FolderPages pages(m_files, folder.path);
    for (const Probe &probe : folder.probes) {
        if (stop.stop_requested())
            return;
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
