#include "projectfiles/changes/FinishChanges.h"

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "projectfiles/changes/ChangePlan.h"
#include "projectfiles/changes/StepRunner.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::seconds patience{10};

enum class State { NotDone, Done, Unclear };

/// Does what is left of one change. Steps are done in order, and only names since the last written
/// file can have been lost: all before the last step that is seen to be done is done, but for
/// those.
class Completion final
{
public:
    Completion(FileSystem &files, const QString &folder, const QList<PlannedStep> &steps)
        : m_files(files)
        , m_folder(folder)
        , m_steps(steps)
        , m_runner(files, folder)
    {
    }

    void run()
    {
        const qsizetype last = lastDone();
        for (qsizetype i = firstOfRun(last); i < m_steps.size(); ++i)
            complete(m_steps.at(i), i <= last);
        m_runner.flush();
    }

    [[nodiscard]] bool didAnything() const { return m_didAnything; }
    [[nodiscard]] const QStringList &leftAlone() const { return m_leftAlone; }

private:
    // Going back, so that no later step hides what one has done.
    [[nodiscard]] qsizetype lastDone() const
    {
        for (qsizetype i = m_steps.size(); i-- > 0;) {
            const PlannedStep &planned = m_steps.at(i);
            const bool isProof =
                planned.step.kind == FileStep::Kind::Move
                || (planned.step.kind == FileStep::Kind::Write && planned.step.after);
            if (isProof && stateOf(planned) == State::Done)
                return i;
        }
        return -1;
    }

    [[nodiscard]] qsizetype firstOfRun(qsizetype last) const
    {
        if (last < 0)
            return 0;
        qsizetype first = last;
        while (first > 0 && m_steps.at(first).step.kind != FileStep::Kind::Write
               && m_steps.at(first - 1).step.kind != FileStep::Kind::Write)
            --first;
        return first;
    }

    [[nodiscard]] State stateOf(const PlannedStep &planned) const
    {
        switch (planned.step.kind) {
        case FileStep::Kind::Write:
            return stateOfFile(planned);
        case FileStep::Kind::Move:
            return stateOfMove(planned);
        default:
            return State::NotDone; // to do such a step again changes nothing
        }
    }

    [[nodiscard]] State stateOfFile(const PlannedStep &planned) const
    {
        const QString &path = planned.step.path;
        if (m_runner.contentOf(path) == planned.step.after)
            return State::Done;
        return planned.isOldAt(m_files, m_folder + path) ? State::NotDone : State::Unclear;
    }

    [[nodiscard]] State stateOfMove(const PlannedStep &planned) const
    {
        const FileStep &step = planned.step;
        if (step.path.compare(step.to, Qt::CaseInsensitive) == 0)
            return isSpelled(step.to) ? State::Done : State::NotDone;
        const bool isThere = m_files.exists(m_folder + step.path);
        const FileKind kind = m_files.status(m_folder + step.to).kind;
        if (isThere)
            return kind == FileKind::Missing ? State::NotDone : State::Unclear;
        // A file is known again by its stamp; something else may have lain there before.
        const bool isFile = planned.oldContent || planned.old.kind == FileKind::File;
        const bool isIt = isFile ? planned.isOldAt(m_files, m_folder + step.to)
                                 : kind != FileKind::Missing && kind != FileKind::File;
        return isIt ? State::Done : State::Unclear;
    }

    [[nodiscard]] bool isSpelled(const QString &path) const
    {
        const QString place = m_folder + path;
        return m_files.exists(place)
               && std::ranges::any_of(
                   m_files.kinds(parentFolder(place)),
                   [&](const FolderEntry &entry) { return entry.name == lastComponent(place); });
    }

    void complete(const PlannedStep &planned, bool isKnownToBeDone)
    {
        const State state = stateOf(planned);
        if (state == State::Done || (state == State::Unclear && isKnownToBeDone))
            return;
        if (state == State::Unclear)
            m_leftAlone.append(m_folder + planned.step.path);
        else
            perform(planned.step);
    }

    // Where somebody took away the folder of a file there is nothing to complete.
    void perform(const FileStep &step)
    {
        try {
            m_runner.perform(step, StepRunner::Backup::Keep);
            m_didAnything = true;
        } catch (const QvError &error) {
            if (error.number() != FileNotFound && error.number() != PathNotFound)
                throw;
            m_leftAlone.append(m_folder + step.path);
        }
    }

    FileSystem &m_files;
    const QString m_folder;
    const QList<PlannedStep> &m_steps;
    StepRunner m_runner;
    bool m_didAnything = false;
    QStringList m_leftAlone;
};

QString named(const QString &name)
{
    return name.isEmpty() ? u"A change that was interrupted"_s
                          : u"The interrupted change \"%1\""_s.arg(name);
}

/// What became of one plan, in words; "" when all had been done.
QString finish(FileSystem &files, const QString &folder, ChangePlan &plan)
{
    if (const auto damage = plan.read())
        return u"What an interrupted change was to do cannot be read any more, so nothing of it "
               u"was "
               "done now: %1\nIt is kept as %2"_s.arg(*damage, plan.putAside(u".damaged"_s));
    Completion completion(files, folder, plan.steps());
    completion.run();
    if (!completion.leftAlone().isEmpty())
        return u"%1 has been completed, but for what somebody else changed meanwhile:\n%2\nWhat it "
               "was to do there is kept as %3"_s.arg(named(plan.name()),
                                                     completion.leftAlone().join(u'\n'),
                                                     plan.putAside(u".kept"_s));
    plan.remove();
    return completion.didAnything() ? named(plan.name()) + u" has been completed."_s : QString();
}

} // namespace

QStringList finishInForce(FileSystem &files, const QString &projectFolder)
{
    QStringList said;
    for (ChangePlan plan : ChangePlan::inForce(files, projectFolder)) {
        const auto cannot = [&](const QvError &error) {
            return said.append(
                u"%1 could not be completed. This is tried again the next time. %2"_s.arg(
                    named(plan.name()), error.description()));
        };
        const QString done = trap(cannot, [&] { return finish(files, projectFolder, plan); });
        if (!done.isEmpty())
            said.append(done);
    }
    return said;
}

QStringList finishChanges(FileSystem &files, const QString &projectFolder)
{
    if (ChangePlan::inForce(files, projectFolder).isEmpty())
        return {};
    const auto lock = lockChanges(files, projectFolder, patience);
    if (!lock)
        return {u"Another author's QV Developer is changing this project at this moment. If "
                "something looks half done, read the project again in a moment. The file "
                "that it holds is "_s
                + changeLockPath(projectFolder)};
    return finishInForce(files, projectFolder);
}
