#include "tools/build/ProjectListing.h"

#include "platform/Paths.h"
#include "platform/QvError.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int deepest = 64; // as everywhere: beyond it nothing is gone into

std::string foldedPath(const std::string &path)
{
    return QString::fromStdString(path).toCaseFolded().toStdString();
}

bool isAscii(std::string_view text)
{
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

std::string folded(std::string_view path)
{
    std::string result(path);
    if (!isAscii(path))
        return foldedPath(result);
    for (char &c : result)
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
    return result;
}

ProjectListing::File fileOf(std::string path, const FileStatus &status)
{
    return {std::move(path), status.size, status.modified.toMSecsSinceEpoch(), status.readOnly};
}

} // namespace

/// Goes through the folders of a project.
struct ProjectListing::Walk
{
    FileSystem &files;
    ProjectListing &listing;
    const Progress &progress;

    void enter(const QString &folder, const std::string &path, int depth)
    {
        progress.step(static_cast<int>(listing.m_files.size()), 0);
        const QList<FolderEntry> entries = entriesOf(folder, depth);
        for (const FolderEntry &entry : entries) {
            std::string place = path + entry.name.toStdString();
            if (entry.status.kind == FileKind::File) {
                listing.m_files.push_back(fileOf(std::move(place), entry.status));
            } else if (entry.status.kind == FileKind::Folder && !isLeftOut(place)
                       && depth < deepest) {
                listing.m_folders.emplace(place, true);
                enter(folder + entry.name + u'\\', place + '/', depth + 1);
            }
        }
    }
    /// A folder that went since the one above was read is as good as empty.
    QList<FolderEntry> entriesOf(const QString &folder, int depth) const
    {
        try {
            return files.entries(folder);
        } catch (const QvError &error) {
            if (depth == 1 || error.number() != PathNotFound)
                throw;
        }
        return {};
    }
    static bool isLeftOut(const std::string &path)
    {
        return folded(path) == folded(ProjectListing::listed(ProjectFile::backupFolder));
    }
};

ProjectListing ProjectListing::read(FileSystem &files, const QString &projectFolder,
                                    const Progress &progress)
{
    ProjectListing listing;
    Walk{files, listing, progress}.enter(projectFolder, {}, 1);
    listing.makeTables();
    return listing;
}

void ProjectListing::makeTables()
{
    std::sort(m_files.begin(), m_files.end(),
              [](const File &a, const File &b) { return a.path < b.path; });
    m_byPath.reserve(m_files.size());
    m_byFoldedPath.reserve(m_files.size());
    for (quint32 i = 0; i < m_files.size(); ++i) {
        m_byPath.emplace(m_files[i].path, i);
        m_byFoldedPath[folded(m_files[i].path)].push_back(i);
    }
    std::vector<std::string> spelled;
    for (const auto &[folder, exact] : m_folders)
        spelled.push_back(folder);
    for (const std::string &folder : spelled)
        m_folders.emplace(folded(folder), false);
}

ProjectListing::Found ProjectListing::find(std::string_view path) const
{
    if (const auto exact = m_byPath.find(path); exact != m_byPath.end())
        return {Match::Exact, exact->second};
    if (path.empty() || m_folders.contains(std::string(path)))
        return {Match::Folder, 0};
    const std::string key = folded(path);
    if (const auto others = m_byFoldedPath.find(key); others != m_byFoldedPath.end()) {
        const std::vector<quint32> &files = others->second;
        return files.size() > 1 ? Found{Match::Ambiguous, 0} : Found{Match::OtherCase, files[0]};
    }
    return {m_folders.contains(key) ? Match::Folder : Match::Missing, 0};
}

QString ProjectListing::spelled(const QString &path) const
{
    const Found found = find(listed(path));
    const bool isThere = found.match == Match::Exact || found.match == Match::OtherCase;
    return isThere ? shown(m_files[found.file].path) : QString();
}

QString ProjectListing::shown(std::string_view path)
{
    return QString::fromUtf8(path.data(), static_cast<qsizetype>(path.size())).replace(u'/', u'\\');
}

std::string ProjectListing::listed(const QString &path)
{
    return QString(path).replace(u'\\', u'/').toStdString();
}
