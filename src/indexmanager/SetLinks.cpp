#include "indexmanager/SetLinks.h"

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "reports/LinkIdFile.h"
#include "reports/TargetCheck.h"
#include "tools/OrderedWork.h"

#include <algorithm>
#include <thread>

namespace {

constexpr int mostThreads = 4;

int threadsOfMachine()
{
    return std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, mostThreads);
}

/// A row per path, with the identifier read last.
class RowCollector final : public LinkVisitor
{
public:
    explicit RowCollector(LinkRows &rows)
        : m_rows(rows)
    {
    }
    void identifier(QStringView text) override { m_rows.setIdentifier(text); }
    void path(QStringView stored) override { m_rows.append(stored); }

private:
    LinkRows &m_rows;
};

/// One set while it is read.
struct ReadSet
{
    SetLinks links;
    LinkPlaces places = {};
    std::vector<quint32> rowPlaces = {}; ///< of published targets
};

class Reading final
{
public:
    Reading(FileSystem &files, const XmlCharacters &characters, const QString &serverPath)
        : m_files(files)
        , m_characters(characters)
        , m_serverPath(serverPath)
        , m_check(files, docsFolder(serverPath))
    {
    }

    std::vector<SetLinks> run(const QStringList &sets, const Progress &progress)
    {
        for (const QString &set : sets)
            m_sets.push_back({.links = {.set = set}});
        readFiles(progress);
        lookForPages(progress);
        std::vector<SetLinks> links;
        for (ReadSet &set : m_sets)
            links.push_back(judged(set));
        return links;
    }

private:
    // The bar counts files in its first half and folders in its second.
    void readFiles(const Progress &progress)
    {
        const auto count = static_cast<int>(m_sets.size());
        inOrder(
            count, threadsOfMachine(), progress.stop,
            [&](int number) { read(m_sets[static_cast<size_t>(number)], progress.stop); },
            [&](int number) {
                ReadSet &set = m_sets[static_cast<size_t>(number)];
                m_check.add(set.places);
                progress.step(number + 1, 2 * count, set.links.set);
            });
    }

    void lookForPages(const Progress &progress)
    {
        const int count = m_check.folderCount();
        inOrder(
            count, threadsOfMachine(), progress.stop,
            [&](int number) { m_check.checkFolder(number, progress.stop); },
            [&](int number) {
                progress.step(count + number + 1, 2 * count, m_check.folder(number));
            });
    }

    void read(ReadSet &set, const std::stop_token &stop) const
    {
        const auto failed = [&](const QvError &error) {
            set = {.links = {.set = set.links.set, .problem = error.description()}};
        };
        trap(failed, [&] { readFile(set, stop); });
        set.links.targets.squeeze();
        set.links.references.squeeze();
        for (qsizetype row = 0; row < set.links.targets.size(); ++row)
            set.rowPlaces.push_back(set.places.listed(set.links.targets.path(row)));
        set.places.squeeze();
    }

    void readFile(ReadSet &set, const std::stop_token &stop) const
    {
        const QString path =
            existingProjectFolder(m_files, m_serverPath, set.links.set) + ProjectFile::links;
        if (!m_files.exists(path))
            return;
        RowCollector targets(set.links.targets);
        RowCollector references(set.links.references);
        readLinkIdFile(m_files, m_characters, path,
                       {.targets = &targets, .references = &references}, stop);
    }

    static SetLinks judged(ReadSet &set)
    {
        for (qsizetype row = 0; row < set.links.targets.size(); ++row) {
            if (set.places.isGood(set.rowPlaces[static_cast<size_t>(row)]))
                set.links.targets.setGood(row);
        }
        return std::move(set.links);
    }

    FileSystem &m_files;
    const XmlCharacters &m_characters;
    const QString &m_serverPath;
    TargetCheck m_check;
    std::vector<ReadSet> m_sets;
};

} // namespace

std::vector<SetLinks> readSetLinks(FileSystem &files, const XmlCharacters &characters,
                                   const QString &serverPath, const QStringList &sets,
                                   const Progress &progress)
{
    return Reading(files, characters, serverPath).run(sets, progress);
}

StoredPlace storedPlace(QStringView stored)
{
    const QString path = stored.toString().replace(u'/', u'\\');
    const qsizetype set = path.indexOf(u'\\');
    const qsizetype anchor = path.lastIndexOf(u'#');
    if (set < 0)
        return {.set = path};
    if (anchor < set)
        return {path.first(set), path.sliced(set + 1)};
    return {path.first(set), path.sliced(set + 1, anchor - set - 1), path.sliced(anchor + 1)};
}

QString placeInSet(const QString &set, QStringView stored)
{
    const StoredPlace place = storedPlace(stored);
    return place.set.compare(set, Qt::CaseInsensitive) == 0 ? place.place() : stored.toString();
}
