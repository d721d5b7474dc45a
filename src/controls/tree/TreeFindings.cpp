#include "controls/tree/TreeFindings.h"

#include "controls/build/BackgroundWork.h"
#include "controls/session/ChangeWatch.h"
#include "platform/Progress.h"
#include "platform/QvError.h"
#include "startup/Program.h"
#include "tools/checks/QaReport.h"

TreeFindings::TreeFindings(ProjectSession &session, QObject *parent)
    : QObject(parent)
    , m_session(session)
    , m_watch(new ChangeWatch(session.program().files, this))
    , m_reading(new BackgroundWork(session.program().ending, this))
{
    connect(&session, &ProjectSession::wasReset, this, &TreeFindings::follow);
    connect(m_watch, &ChangeWatch::changed, this, &TreeFindings::read);
    // The windows of the build tell what is wrong with a report that cannot be read.
    connect(m_reading, &BackgroundWork::ended, this, [this](bool, const QString &problem) {
        if (!problem.isEmpty())
            take({});
    });
    follow();
}

TreeFindings::~TreeFindings() = default;

void TreeFindings::follow()
{
    m_watch->forgetAll();
    m_reading->giveUp();
    take({});
    if (m_session.folder().isEmpty())
        return;
    const auto unreachable = [](const QvError &) {}; // the next look tries again
    trap(unreachable, [this] {
        FileSystem &files = m_session.program().files;
        for (const QString &path :
             {qaReportPath(m_session.folder()), baselinePath(m_session.folder())})
            m_watch->watch(path, stampOf(files, path));
    });
    read();
}

void TreeFindings::read()
{
    FileSystem &files = m_session.program().files;
    m_reading->start([this, &files, folder = m_session.folder()](const Progress &) {
        const auto report = readQaReport(files, folder);
        m_reading->tell(
            [this, counts = newFindingsByFile(report.value_or(QaReport()))] { take(counts); });
    });
}

void TreeFindings::take(const QHash<QString, int> &counts)
{
    if (counts == m_counts)
        return;
    m_counts = counts;
    Q_EMIT changed();
}
