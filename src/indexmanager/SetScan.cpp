#include "indexmanager/SetScan.h"

#include "controls/build/BuiltProject.h"
#include "platform/Paths.h"
#include "platform/QvError.h"
#include "tools/PageReference.h"
#include "tools/build/BuildRun.h"
#include "tools/build/ProjectListing.h"

#include <algorithm>
#include <optional>
#include <set>

using namespace Qt::StringLiterals;

namespace {

std::optional<qint64> timeOf(const ProjectListing &listing, const QString &path)
{
    using Match = ProjectListing::Match;
    const auto found = listing.find(ProjectListing::listed(path));
    if (found.match != Match::Exact && found.match != Match::OtherCase)
        return std::nullopt;
    return listing.files()[found.file].modified;
}

/// What the linking tool reads: pages, books, the list of books.
bool isSource(const QString &path)
{
    const QString name = lastComponent(path);
    return isPageName(name) || name.compare(ProjectFile::toc, Qt::CaseInsensitive) == 0
           || (name.startsWith("Book_"_L1, Qt::CaseInsensitive)
               && name.endsWith(".xml"_L1, Qt::CaseInsensitive)
               && !path.startsWith("DynamicHelp\\"_L1, Qt::CaseInsensitive)
               && !path.startsWith("QuickNav\\"_L1, Qt::CaseInsensitive));
}

/// The folders of sources, without the set's own, in which something was added, removed or renamed
/// since: a page that moves keeps its time.
QStringList changedFolders(FileSystem &files, const QString &set, const ProjectListing &listing,
                           const QDateTime &scanned)
{
    std::set<QString> folders;
    for (const ProjectListing::File &file : listing.files()) {
        const QString path = ProjectListing::shown(file.path);
        qsizetype end = isSource(path) ? path.lastIndexOf(u'\\') : -1;
        while (end > 0 && folders.insert(path.first(end)).second)
            end = path.lastIndexOf(u'\\', end - 1);
    }
    QStringList changed;
    for (const QString &folder : folders) {
        if (files.status(set + folder).modified > scanned)
            changed.append(withBackslash(folder));
    }
    return changed;
}

SetScan compared(FileSystem &files, const QString &set, const ProjectListing &listing)
{
    const auto written = timeOf(listing, ProjectFile::links);
    if (!written)
        return {.state = ScanState::NeverScanned};
    // The link file alone is also written when pages move; what the tool writes last says when it
    // ran. Sets that came from elsewhere may not have it.
    const qint64 scanned =
        std::min(*written, timeOf(listing, resultOf(BuildTool::DocToDoc)).value_or(*written));
    SetScan scan{.scanned = QDateTime::fromMSecsSinceEpoch(scanned, Qt::UTC)};
    for (const ProjectListing::File &file : listing.files()) {
        const QString path = ProjectListing::shown(file.path);
        if (file.modified > scanned && isSource(path))
            scan.newer.append(path);
    }
    if (scan.newer.isEmpty())
        scan.newer = changedFolders(files, set, listing, scan.scanned);
    if (!scan.newer.isEmpty())
        scan.state = ScanState::Stale;
    return scan;
}

} // namespace

SetScan scanStateOf(FileSystem &files, const QString &serverPath, const QString &set,
                    const Progress &progress)
{
    SetScan scan;
    const auto failed = [&](const QvError &error) {
        scan = {.state = ScanState::NoSet, .problem = error.description()};
    };
    trap(failed, [&] {
        const QString folder = existingProjectFolder(files, serverPath, set);
        scan = compared(files, folder, ProjectListing::read(files, folder, progress));
    });
    return scan;
}

ToolReport scanAgain(Program &program, const QString &set, const Progress &progress)
{
    const BuiltProject project(program, set, {});
    Session session = project.session();
    bool isOutdated = false;
    const BuildObserver observer{{}, {}, [&] { isOutdated = true; }};
    const BuildOrder order{.tools = {BuildTool::DocToDoc}, .checks = CheckLevel::Off};
    const BuildResult result = runBuild(session, program.files, set,
                                        project.language(program.files), order, observer, progress);
    const ToolReport report = result.of(BuildTool::DocToDoc).value();
    project.setLight(program, BuildTool::DocToDoc,
                     isOutdated ? Light::mustRun : lightOf(report.outcome));
    return report;
}
