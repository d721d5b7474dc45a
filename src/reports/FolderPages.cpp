#include "reports/FolderPages.h"

#include "platform/Paths.h"
#include "platform/QvError.h"

using State = LinkPlaces::State;

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
