#include "reports/LinkListing.h"

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "reports/TargetCheck.h"
#include "tools/OrderedWork.h"

#include <algorithm>
#include <optional>
#include <thread>

namespace {

constexpr int mostThreads = 4;

// What the visitors of a link-ID file keep of it.

/// An entry per path, with the identifier read last.
class RowCollector : public LinkVisitor
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

/// The same, and the place that each entry names.
class TargetCollector final : public RowCollector
{
public:
    TargetCollector(LinkRows &rows, LinkPlaces &places, std::vector<quint32> &rowPlaces)
        : RowCollector(rows)
        , m_places(places)
        , m_rowPlaces(rowPlaces)
    {
    }
    void path(QStringView stored) override
    {
        RowCollector::path(stored);
        m_rowPlaces.push_back(m_places.listed(stored));
    }

private:
    LinkPlaces &m_places;
    std::vector<quint32> &m_rowPlaces;
};

/// Where identifiers lead: to the first path of an entry that has them; before all entries, to the
/// first path of a section that holds an entry whose text is the identifier.
class DestinationCollector final : public LinkVisitor, public SectionVisitor
{
public:
    DestinationCollector(LinkDestinations &destinations, LinkPlaces &places)
        : m_destinations(destinations)
        , m_places(places)
    {
    }
    void identifier(QStringView text) override { m_destinations.append(text); }
    void path(QStringView stored) override
    {
        if (!m_place)
            m_place = m_places.lookedUp(stored);
    }
    void entryEnds() override
    {
        m_destinations.settle(m_place);
        m_place.reset();
    }
    void sectionTarget(const QString &entryText, QStringView stored) override
    {
        m_sections.append(entryText);
        m_sections.settle(m_places.lookedUp(stored));
    }
    void finish()
    {
        if (!m_sections.all().empty())
            m_destinations.putBehind(std::move(m_sections));
    }

private:
    LinkDestinations &m_destinations;
    LinkPlaces &m_places;
    std::optional<quint32> m_place; ///< of the entry at hand
    LinkDestinations m_sections;
};

/// Tells two visitors.
class BothVisitors final : public LinkVisitor
{
public:
    BothVisitors(LinkVisitor &first, LinkVisitor &second)
        : m_first(first)
        , m_second(second)
    {
    }
    void identifier(QStringView text) override
    {
        m_first.identifier(text);
        m_second.identifier(text);
    }
    void path(QStringView stored) override
    {
        m_first.path(stored);
        m_second.path(stored);
    }
    void entryEnds() override
    {
        m_first.entryEnds();
        m_second.entryEnds();
    }

private:
    LinkVisitor &m_first;
    LinkVisitor &m_second;
};

} // namespace

int listingThreads()
{
    return std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, mostThreads);
}

LinkListing::LinkListing(FileSystem &files, const XmlCharacters &characters, QString serverPath,
                         const QStringList &projects, int threads)
    : m_files(files)
    , m_characters(characters)
    , m_serverPath(std::move(serverPath))
    , m_threads(threads)
{
    for (const QString &project : projects)
        m_linkFiles.push_back({.links = {.set = project}});
}

LinkEntries LinkListing::targets(const Progress &progress)
{
    readAndCheck(&LinkListing::readTargets, progress);
    judgeTargets();
    return joined(&SetLinks::targets);
}

LinkEntries LinkListing::references(const Progress &progress)
{
    readAndCheck(&LinkListing::readReferences, progress);
    resolve(progress);
    return joined(&SetLinks::references);
}

std::vector<SetLinks> LinkListing::everything(const Progress &progress)
{
    readAndCheck(&LinkListing::readBoth, progress);
    judgeTargets();
    resolve(progress);
    std::vector<SetLinks> sets;
    for (LinkFile &file : m_linkFiles)
        sets.push_back(std::move(file.links));
    return sets;
}

bool LinkListing::leadsToPage(const QString &identifier)
{
    for (LinkFile &file : m_linkFiles) {
        readDestinations(file, {});
        const auto &all = file.destinations.all();
        const auto found = std::find_if(all.begin(), all.end(), [&](const auto &destination) {
            return file.destinations.identifier(destination) == identifier;
        });
        if (found != all.end())
            return isPage(file.places.path(found->place));
        file = {.links = {.set = file.links.set}};
    }
    return false;
}

bool LinkListing::isPage(const QString &path) const
{
    LinkPlaces places;
    const quint32 place = places.lookedUp(path);
    TargetCheck check(m_files, docsFolder(m_serverPath));
    check.add(places);
    for (int folder = 0; folder < check.folderCount(); ++folder)
        check.checkFolder(folder);
    return places.isGood(place);
}

void LinkListing::readTargets(LinkFile &file, const std::stop_token &stop) const
{
    TargetCollector targets(file.links.targets, file.places, file.rowPlaces);
    read(file, {.targets = &targets}, stop);
}

void LinkListing::readReferences(LinkFile &file, const std::stop_token &stop) const
{
    RowCollector references(file.links.references);
    DestinationCollector targets(file.destinations, file.places);
    read(file, {&targets, &references, &targets}, stop);
    targets.finish();
}

void LinkListing::readDestinations(LinkFile &file, const std::stop_token &stop) const
{
    DestinationCollector targets(file.destinations, file.places);
    read(file, {.targets = &targets, .sections = &targets}, stop);
    targets.finish();
}

void LinkListing::readBoth(LinkFile &file, const std::stop_token &stop) const
{
    TargetCollector targets(file.links.targets, file.places, file.rowPlaces);
    DestinationCollector destinations(file.destinations, file.places);
    BothVisitors both(targets, destinations);
    RowCollector references(file.links.references);
    read(file, {&both, &references, &destinations}, stop);
    destinations.finish();
}

/// Leaves the file empty when there is none, or none that can be read to its end, or its project
/// cannot be the name of a folder: links are reported, not link files.
void LinkListing::read(LinkFile &file, const LinkVisitors &visitors,
                       const std::stop_token &stop) const
{
    const auto failed = [&](const QvError &error) {
        file = {.links = {.set = file.links.set, .problem = error.description()}};
    };
    trap(failed, [&] {
        const QString path =
            existingProjectFolder(m_files, m_serverPath, file.links.set) + ProjectFile::links;
        if (m_files.exists(path))
            readLinkIdFile(m_files, m_characters, path, visitors, stop);
    });
    file.links.targets.squeeze();
    file.links.references.squeeze();
    file.places.squeeze();
    file.destinations.squeeze();
}

// The bar counts files in its first half and folders in its second; how many folders there are is
// known only when all files have been read.
void LinkListing::readAndCheck(Read readFile, const Progress &progress)
{
    TargetCheck check(m_files, docsFolder(m_serverPath));
    const int count = fileCount();
    inOrder(
        count, m_threads, progress.stop,
        [&](int number) { (this->*readFile)(file(number), progress.stop); },
        [&](int number) {
            check.add(file(number).places);
            progress.step(number + 1, 2 * count, file(number).links.set);
        });
    inOrder(
        check.folderCount(), m_threads, progress.stop,
        [&](int number) { check.checkFolder(number, progress.stop); },
        [&](int number) {
            const int share = static_cast<int>(qint64(number + 1) * count / check.folderCount());
            progress.step(count + share, 2 * count, check.folder(number));
        });
}

void LinkListing::judgeTargets()
{
    for (LinkFile &file : m_linkFiles) {
        LinkRows &rows = file.links.targets;
        for (qsizetype row = 0; row < rows.size(); ++row) {
            if (file.places.isGood(file.rowPlaces[static_cast<size_t>(row)]))
                rows.setGood(row);
        }
    }
}

/// References are good when the first destination of their identifier is.
void LinkListing::resolve(const Progress &progress)
{
    size_t count = 0;
    for (const LinkFile &file : m_linkFiles)
        count += file.destinations.all().size();
    DestinationIndex index(count);
    for (const LinkFile &file : m_linkFiles)
        index.add(file.destinations, file.places);

    const auto resolveFile = [&](int number) {
        LinkRows &rows = file(number).links.references;
        for (qsizetype row = 0; row < rows.size(); ++row) {
            if (index.leadsToPage(rows.identifier(row)))
                rows.setGood(row);
        }
    };
    inOrder(fileCount(), m_threads, progress.stop, resolveFile, [](int) {});
}

LinkEntries LinkListing::joined(LinkRows SetLinks::*rows)
{
    LinkEntries entries(docsFolder(m_serverPath));
    for (LinkFile &file : m_linkFiles)
        entries.append(std::move(file.links.*rows));
    return entries;
}
