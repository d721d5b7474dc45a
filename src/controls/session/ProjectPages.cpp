#include "controls/session/ProjectPages.h"

#include "controls/session/ProjectSession.h"
#include "platform/Paths.h"
#include "platform/QvError.h"
#include "platform/TreeWalker.h"
#include "startup/Session.h"

#include <QScopeGuard>
#include <QScopedValueRollback>

#include <chrono>
#include <utility>

using namespace std::chrono_literals;

namespace {

/// Removes what killed programs left of pages that they were writing. No folder goes, whatever it
/// is called, and failing to do so harms nobody.
void tidyUp(FileSystem &files, const QString &folder)
{
    trap([](const QvError &) {},
         [&] {
             if (files.status(folder).kind != FileKind::Folder)
                 return;
             QStringList folders;
             for (const FolderEntry &entry : files.kinds(folder)) {
                 if (entry.status.kind == FileKind::Folder)
                     folders.append(entry.name);
             }
             removeAbandoned(files, folder, folders);
         });
}

} // namespace

ProjectPages::ProjectPages(ProjectSession &session)
    : m_session(session)
{
    m_later.setSingleShot(true);
    m_later.setInterval(300ms);
    connect(&m_later, &QTimer::timeout, this, &ProjectPages::readNow);
    connect(&session, &ProjectSession::wasReset, this, &ProjectPages::forget);
    connect(&session, &ProjectSession::booksChanged, this, &ProjectPages::readLater);
    connect(&session, &ProjectSession::filesChanged, this, &ProjectPages::outdate);
}

ProjectPages::~ProjectPages()
{
    stopReading();
}

const PageIndex &ProjectPages::current()
{
    stopReading(); // what it read so far is not read again
    const QScopedValueRollback asked(m_isAsked, true);
    const Job work = job();
    m_next.outdate(std::exchange(m_outdated, {}));
    auto tryAgain = qScopeGuard([this] { readLater(); });
    m_session.runLong(tr("Looking at the pages..."), [&](const Progress &progress) {
        m_next.update(m_session.program().files, work.folder, work.folders, work.language,
                      progress);
    });
    tryAgain.dismiss();
    publish();
    return m_index;
}

/// Another project, or all of this one may have changed.
void ProjectPages::forget()
{
    stopReading();
    m_outdated.clear();
    const QString name = m_session.projectName();
    if (name.isEmpty() || name != m_next.projectName()) {
        m_index = m_next = {};
        m_isReady = false;
    }
    if (!name.isEmpty())
        readLater();
}

void ProjectPages::outdate(const QStringList &paths)
{
    m_outdated += paths;
    readLater();
}

void ProjectPages::readLater()
{
    m_later.start();
}

void ProjectPages::readNow()
{
    if (m_session.projectName().isEmpty())
        return;
    if (m_isAsked) {
        readLater(); // the progress dialog lets events through
        return;
    }
    stopReading();
    m_next.outdate(std::exchange(m_outdated, {}));
    const auto read = [this, work = job(), number = m_readings,
                       isFirst = !m_isReady](const std::stop_token &stop) {
        try {
            m_next.update(m_session.program().files, work.folder, work.folders, work.language,
                          {{}, stop});
        } catch (...) {
            return; // stopped; or a folder cannot be listed, which is said to those who must be
                    // exact
        }
        const auto arrive = [this, number] {
            if (number == m_readings)
                publish();
        };
        QMetaObject::invokeMethod(this, arrive, Qt::QueuedConnection);
        for (const QString &name : work.folders) {
            const auto place = insideOf(work.folder, name);
            if (isFirst && place && !stop.stop_requested())
                tidyUp(m_session.program().files, *place);
        }
    };
    m_reader = std::jthread(read);
}

void ProjectPages::stopReading()
{
    ++m_readings;
    m_later.stop();
    m_reader = {}; // asks it to stop and waits; it looks after every page
}

void ProjectPages::publish()
{
    m_index = m_next;
    m_isReady = true;
    Q_EMIT updated();
}

ProjectPages::Job ProjectPages::job() const
{
    Job work{m_session.folder(),
             {ProjectFile::globalFolder},
             m_session.program().session.projectLanguage};
    for (const TocBook &book : m_session.books())
        work.folders.append(book.folder);
    return work;
}
