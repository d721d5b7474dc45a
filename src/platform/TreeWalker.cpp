#include "platform/TreeWalker.h"

#include "platform/Paths.h"
#include "platform/QvError.h"

#include <QHash>
#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int deepest = 64;

void refuseTooDeep(int depth, const QList<FolderEntry> &entries, const QString &folder)
{
    if (depth > deepest && !entries.isEmpty())
        throw QvError(PathFileAccess, {},
                      u"The folders lie more than 64 levels deep: "_s + withoutBackslash(folder));
}

/// Called for each thing met; says whether to go into it when it is a folder.
using Visitor = std::function<bool(const TreeEntry &)>;

void walk(FileSystem &files, const QString &folder, const QString &relative, int depth,
          const Visitor &visit)
{
    const QList<FolderEntry> entries = files.entries(folder);
    refuseTooDeep(depth, entries, folder);
    for (const FolderEntry &entry : entries) {
        const TreeEntry met{folder + entry.name, relative + entry.name, entry.status};
        if (visit(met) && entry.status.kind == FileKind::Folder)
            walk(files, met.path + u'\\', met.relative + u'\\', depth + 1, visit);
    }
}

void walkInto(FileSystem &files, const QString &folder, const Visitor &visit)
{
    walk(files, withBackslash(folder), {}, 1, visit);
}

/// A folder of the tree with what is to be copied or deleted directly in it.
struct FolderPlan
{
    QString relative; ///< with a backslash at the end; empty for the start folder
    QStringList names;
};

struct CopyPlan
{
    QList<FolderPlan> folders; ///< each before those in it
    QStringList links;
    int count = 0;
};

CopyPlan planCopy(FileSystem &files, const QString &from,
                  const std::function<bool(const TreeEntry &)> &leaveOut)
{
    CopyPlan plan{{FolderPlan{}}, {}, 0};
    QHash<QString, qsizetype> index{{QString(), 0}};
    walkInto(files, from, [&](const TreeEntry &entry) {
        if (leaveOut && leaveOut(entry))
            return false;
        if (entry.status.kind == FileKind::Folder) {
            index.insert(entry.relative + u'\\', plan.folders.size());
            plan.folders.append({entry.relative + u'\\', {}});
        } else if (entry.status.kind == FileKind::File) {
            plan.folders[index.value(parentFolder(entry.relative))].names.append(
                lastComponent(entry.relative));
            ++plan.count;
        } else {
            plan.links.append(entry.relative);
        }
        return true;
    });
    return plan;
}

void refuseInside(const QString &from, const QString &to)
{
    QString source = withBackslash(from).toCaseFolded();
    QString target = withBackslash(to).toCaseFolded();
    source.replace(u'/', u'\\');
    target.replace(u'/', u'\\');
    if (target.startsWith(source))
        throw QvError(PathFileAccess, {}, u"A folder cannot be copied into itself: "_s + to);
}

QString asideStem(const QString &name)
{
    return shortened(name, 240);
}

/// A name beside the folder that is not taken, for the folder while it is being deleted.
QString asideName(FileSystem &files, const QString &folder)
{
    const QString name = asideStem(lastComponent(folder));
    for (int number = 1;; ++number) {
        const QString aside = parentFolder(folder) + name + u".qvdel"_s + QString::number(number);
        if (!files.exists(aside))
            return aside;
    }
}

/// What somebody else removed in the meantime is as good as removed.
void unlessGone(const std::function<void()> &remove)
{
    try {
        remove();
    } catch (const QvError &error) {
        if (error.number() != FileNotFound && error.number() != PathNotFound)
            throw;
    }
}

/// What is to be deleted.
struct DeletionPlan
{
    QList<FolderPlan> folders; ///< each behind those in it
    QStringList lockedFolders; ///< read-only ones; "" is the start folder
    int count = 0;             ///< files and links
};

void planDeletion(FileSystem &files, const QString &folder, const FolderEntry &below, int depth,
                  DeletionPlan &plan)
{
    const QList<FolderEntry> entries = files.kinds(folder + below.name);
    refuseTooDeep(depth, entries, folder + below.name);
    if (below.status.readOnly)
        plan.lockedFolders.append(below.name);
    QStringList names;
    for (const FolderEntry &entry : entries) {
        if (entry.status.kind == FileKind::Folder)
            planDeletion(files, folder, {below.name + entry.name + u'\\', entry.status}, depth + 1,
                         plan);
        else
            names.append(entry.name);
    }
    plan.count += static_cast<int>(names.size());
    plan.folders.append({below.name, names});
}

DeletionPlan planDeletion(FileSystem &files, const QString &folder)
{
    DeletionPlan plan;
    planDeletion(files, withBackslash(folder), {{}, files.status(folder)}, 1, plan);
    return plan;
}

void setLocked(FileSystem &files, const QString &folder, const DeletionPlan &plan, int attributes)
{
    for (const QString &locked : plan.lockedFolders)
        unlessGone([&] { files.setAttributes(withBackslash(folder) + locked, attributes); });
}

/// `begun` says whether anything is gone, also when it fails.
void deletePlanned(FileSystem &files, const QString &folder, const DeletionPlan &plan,
                   const Progress &progress, bool &begun)
{
    const QString base = withBackslash(folder);
    setLocked(files, folder, plan, 0);
    int done = 0;
    const auto removed = [&](const QString &name) {
        begun = true;
        progress.step(++done, plan.count, name);
    };
    for (const FolderPlan &from : plan.folders) {
        unlessGone([&] {
            if (!from.names.isEmpty())
                files.removeFiles(base + from.relative, from.names, removed);
            files.removeFolder(base + from.relative);
            begun = true;
        });
    }
}

/// Undoes the beginning of a deletion. False when that fails too: the folder stays aside.
bool putBack(FileSystem &files, const QString &aside, const QString &folder,
             const DeletionPlan &plan)
{
    return trap([](const QvError &) {},
                [&] {
                    files.move(aside, folder);
                    setLocked(files, folder, plan, ReadOnlyFile);
                    return true;
                });
}

/// One that resists does no harm; the next start tries it again.
void removeMatching(FileSystem &files, const QString &parent, const QStringList &kept,
                    const std::function<bool(const FolderEntry &)> &matches)
{
    for (const FolderEntry &entry : files.entries(parent)) {
        if (!matches(entry) || kept.contains(entry.name, Qt::CaseInsensitive))
            continue;
        const QString path = withBackslash(parent) + entry.name;
        trap([](const QvError &) {},
             [&] {
                 bool begun = false;
                 if (entry.status.kind == FileKind::Folder)
                     deletePlanned(files, path, planDeletion(files, path), {}, begun);
                 else if (entry.status.kind == FileKind::File)
                     files.removeFile(path, true);
             });
    }
}

void refuseUnlessFolder(FileSystem &files, const QString &folder)
{
    const FileKind kind = files.status(folder).kind;
    if (kind == FileKind::Missing)
        throw QvError(PathNotFound, {}, u"The folder is not there: "_s + folder);
    if (kind != FileKind::Folder || lastComponent(folder).endsWith(u':'))
        throw QvError(PathFileAccess, {}, u"This is no folder that can be deleted: "_s + folder);
}

} // namespace

void walkTree(FileSystem &files, const QString &folder,
              const std::function<void(const TreeEntry &)> &visit)
{
    walkInto(files, folder, [&](const TreeEntry &entry) {
        visit(entry);
        return true;
    });
}

QStringList copyTree(FileSystem &files, const QString &from, const QString &to,
                     const Progress &progress,
                     const std::function<bool(const TreeEntry &)> &leaveOut)
{
    refuseInside(from, to);
    const CopyPlan plan = planCopy(files, from, leaveOut);
    const QString source = withBackslash(from);
    const QString target = withBackslash(to);
    int done = 0;
    progress.step(done, plan.count);
    for (const FolderPlan &folder : plan.folders) {
        if (!folder.relative.isEmpty() || !files.folderExists(to))
            files.makeFolder(target + folder.relative);
        files.copyFiles(source + folder.relative, target + folder.relative, folder.names,
                        [&](const QString &name) { progress.step(++done, plan.count, name); });
    }
    return plan.links;
}

QString deleteTree(FileSystem &files, const QString &folder, const Progress &progress)
{
    refuseUnlessFolder(files, folder);
    const DeletionPlan plan = planDeletion(files, folder);
    const QString aside = asideName(files, folder);
    progress.step(0, plan.count);
    files.move(folder, aside);
    bool begun = false;
    try {
        deletePlanned(files, aside, plan, progress, begun);
    } catch (const Unwinding &unwinding) {
        if (unwinding.reason != Unwinding::Reason::Stopped)
            throw;
        return files.exists(aside) ? aside : QString();
    } catch (const QvError &error) {
        if (begun || !putBack(files, aside, folder, plan))
            throw;
        throw QvError(error.number(), error.source(),
                      QString(error.description()).replace(aside, folder));
    }
    return {};
}

void removeLeftovers(FileSystem &files, const QString &parent, const QStringList &kept)
{
    static const QRegularExpression aside(u"\\.qvdel[0-9]+$"_s);
    // A program that was killed may have left all of a listed folder aside.
    const auto isMissed = [&](const QString &stem) {
        return std::any_of(kept.cbegin(), kept.cend(), [&](const QString &name) {
            return asideStem(name).compare(stem, Qt::CaseInsensitive) == 0
                   && !files.exists(withBackslash(parent) + name);
        });
    };
    removeMatching(files, parent, kept, [&](const FolderEntry &entry) {
        const QRegularExpressionMatch match = aside.match(entry.name);
        return match.hasMatch() && entry.status.kind == FileKind::Folder
               && !isMissed(entry.name.first(match.capturedStart()));
    });
}

void removeAbandoned(FileSystem &files, const QString &parent, const QStringList &kept)
{
    const QDateTime before = files.status(parent).modified.addDays(-1);
    static const QRegularExpression temporary(u"\\.qvtmp[0-9]+$"_s);
    removeMatching(files, parent, kept, [&](const FolderEntry &entry) {
        const bool ours = entry.status.kind == FileKind::Folder
                              ? entry.name.endsWith(".qvnew"_L1)
                              : temporary.match(entry.name).hasMatch();
        return ours && entry.status.modified < before;
    });
}
