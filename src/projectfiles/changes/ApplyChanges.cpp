#include "platform/Paths.h"
#include "platform/QvError.h"
#include "projectfiles/changes/ChangePlan.h"
#include "projectfiles/changes/FinishChanges.h"
#include "projectfiles/changes/StepRunner.h"

#include <QHash>

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::seconds patience{10};

using Stamps = QHash<QString, FileStamp>; ///< by folded path

/// Whether a file that a change begins from is as it was; `now` gets its stamp.
bool isUnchanged(FileSystem &files, const QString &path, const ExpectedFile &file, FileStamp &now)
{
    now = stampOf(files, path);
    if (now == file.stamp)
        return true;
    const auto content =
        now.kind == FileKind::Missing ? std::nullopt : std::optional(files.readFile(path));
    return content == file.bytes;
}

Stamps requireUnchanged(FileSystem &files, const QString &folder, const FileChanges &changes)
{
    Stamps found;
    for (const ExpectedFile &file : changes.expected) {
        const QString path = folder + file.path;
        if (!isUnchanged(files, path, file, found[file.path.toCaseFolded()]))
            throw QvError(PathFileAccess, {},
                          u"Another author changed %1 meanwhile. Nothing was changed; please "
                          "look at it and try again."_s.arg(path));
    }
    return found;
}

/// What the written files look like after the change.
QList<ExpectedFile> written(FileSystem &files, const QString &folder, const FileChanges &changes)
{
    QHash<QString, std::optional<QByteArray>> contents; // by folded path
    QHash<QString, QString> paths;
    for (const FileStep &step : changes.steps) {
        const QString key = step.path.toCaseFolded();
        if (step.kind == FileStep::Kind::Write) {
            contents.insert(key, step.after);
            paths.insert(key, step.path);
        } else if (step.kind == FileStep::Kind::Move) {
            contents = carriedKeys(contents, key, step.to.toCaseFolded());
            for (auto path = paths.begin(); path != paths.end(); ++path)
                *path = carriedOver(*path, step.path, step.to).value_or(*path);
            paths = carriedKeys(paths, key, step.to.toCaseFolded());
        }
    }
    QList<ExpectedFile> expected;
    for (auto file = contents.cbegin(); file != contents.cend(); ++file) {
        const QString path = paths.value(file.key());
        expected.append({path, stampOf(files, folder + path), *file});
    }
    return expected;
}

/// The lock under which several files change. What a dead program left is finished first: it may
/// be about these very files.
std::unique_ptr<FileLock> takeTurn(FileSystem &files, const QString &folder)
{
    auto lock = lockChanges(files, folder, patience);
    if (!lock)
        throw QvError(PermissionDenied, {},
                      u"Another author's QV Developer is changing this project. Try again in a "
                      "moment. The file that it holds is "_s
                          + changeLockPath(folder));
    if (const QStringList done = finishInForce(files, folder); !done.isEmpty())
        throw QvError(PathFileAccess, {},
                      done.join(u'\n') + u"\nNothing else was changed; please try again."_s);
    return lock;
}

/// Takes the first `done` steps back. A file that the next one wrote may be there all the same and
/// only not have been flushed.
void takeBack(StepRunner &runner, const QList<FileStep> &steps, qsizetype done)
{
    const auto say = [&](const QvError &error) {
        throw QvError(error.number(), {},
                      u"%1\nWhat was begun cannot be taken back either. It is finished the next "
                      "time the project is changed or opened."_s.arg(error.description()));
    };
    trap(say, [&] {
        if (done < steps.size() && steps.at(done).kind == FileStep::Kind::Write)
            runner.takeBack(steps.at(done));
        while (done > 0)
            runner.takeBack(steps.at(--done));
        runner.flush();
    });
}

/// A plan that stays although all is done or taken back is found to be so when it is finished.
void removeQuietly(std::optional<ChangePlan> &plan)
{
    trap([](const QvError &) {},
         [&] {
             if (plan)
                 plan->remove();
         });
}

void run(StepRunner &runner, const QList<FileStep> &steps, const Progress &progress,
         qsizetype &done)
{
    for (const FileStep &step : steps) {
        progress.step(static_cast<int>(done), static_cast<int>(steps.size()), step.path);
        runner.perform(step, StepRunner::Backup::Keep);
        ++done;
    }
    runner.flush();
}

} // namespace

std::optional<QString> changedSince(FileSystem &files, const QString &projectFolder,
                                    const FileChanges &changes)
{
    FileStamp now;
    for (const ExpectedFile &file : changes.expected) {
        if (!isUnchanged(files, projectFolder + file.path, file, now))
            return file.path;
    }
    return std::nullopt;
}

void applyChanges(FileSystem &files, const QString &projectFolder, FileChanges &changes,
                  const Progress &progress)
{
    const bool needsPlan = changes.steps.size() > 1;
    const auto lock = needsPlan ? takeTurn(files, projectFolder) : nullptr;
    const Stamps old = requireUnchanged(files, projectFolder, changes);
    std::optional<ChangePlan> plan;
    if (needsPlan)
        plan = ChangePlan::write(files, projectFolder, changes, old);
    StepRunner runner(files, projectFolder);
    qsizetype done = 0;
    try {
        run(runner, changes.steps, progress, done);
    } catch (...) {
        takeBack(runner, changes.steps, done);
        removeQuietly(plan);
        throw;
    }
    changes.expected = written(files, projectFolder, changes);
    removeQuietly(plan);
}
