#include "tools/pack/PackPlan.h"

#include "platform/QvError.h"
#include "tools/pack/Deflate.h"
#include "tools/pack/LastPack.h"
#include "tools/pack/PackContents.h"

#include <algorithm>

namespace {

using Change = PackItem::Change;

/// The manifest of the last pack; an empty one when there is none.
PackManifest lastManifest(FileSystem &files, PackPlan &plan)
{
    const auto isProblem = [&](const QvError &error) { plan.lastProblem = error.description(); };
    return trap(isProblem, [&] {
        if (!files.fileExists(plan.path))
            return PackManifest();
        PackManifest manifest = LastPack(files, plan.path).manifest();
        plan.last = QDateTime::fromMSecsSinceEpoch(manifest.date(), Qt::UTC);
        return manifest;
    });
}

/// Goes through both lists side by side.
class Comparison final
{
public:
    Comparison(FileSystem &files, const QString &folder, PackPlan &plan)
        : m_files(files)
        , m_folder(folder)
        , m_plan(plan)
    {
    }

    void run(const std::vector<ProjectListing::File> &now, const std::vector<PackedFile> &last,
             const Progress &progress)
    {
        auto old = last.begin();
        int done = 0;
        for (const ProjectListing::File &file : now) {
            progress.step(done++, static_cast<int>(now.size()), ProjectListing::shown(file.path));
            for (; old != last.end() && old->path < file.path; ++old)
                add(Change::Removed, old->path, 0, old->size);
            if (old == last.end() || old->path != file.path) {
                add(Change::Added, file.path, file.size, 0);
                continue;
            }
            add(isSame(file, *old) ? Change::Unchanged : Change::Changed, file.path, file.size,
                old->size);
            ++old;
        }
        for (; old != last.end(); ++old)
            add(Change::Removed, old->path, 0, old->size);
    }

private:
    void add(Change change, const std::string &path, qint64 size, qint64 before)
    {
        m_plan.items.append({change, ProjectListing::shown(path), size, before});
    }

    // A file that cannot be read counts as changed: packing it says why.
    [[nodiscard]] bool isSame(const ProjectListing::File &now, const PackedFile &last) const
    {
        if (now.size != last.size)
            return false;
        if (now.modified == last.modified)
            return true;
        return trap([](const QvError &) {},
                    [&] {
                        return Deflate::sum(
                                   m_files.readFile(m_folder + ProjectListing::shown(now.path)))
                               == last.sum;
                    });
    }

    FileSystem &m_files;
    QString m_folder;
    PackPlan &m_plan;
};

} // namespace

int PackPlan::count(PackItem::Change change) const
{
    return static_cast<int>(std::count_if(
        items.begin(), items.end(), [&](const PackItem &item) { return item.change == change; }));
}

bool PackPlan::isCurrent() const
{
    return last.isValid() && count(Change::Unchanged) == items.size();
}

PackPlan planPack(FileSystem &files, const BuildInput &input, const ProjectListing &listing,
                  const PackOptions &options, const Progress &progress)
{
    PackPlan plan;
    plan.path = input.folder + packName(input.project);
    const PackContents contents = packContents(input, listing, options.withSources);
    plan.warnings = contents.warnings;
    plan.bytes = contents.bytes;
    const PackManifest last = lastManifest(files, plan);
    Comparison(files, input.folder, plan).run(contents.files, last.files, progress);
    return plan;
}
