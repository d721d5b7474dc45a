#include "controls/build/BackgroundWork.h"

#include "platform/ProgramEnd.h"
#include "platform/Progress.h"
#include "platform/QvError.h"

#include <QCoreApplication>

#include <chrono>

using namespace std::chrono_literals;

BackgroundWork::BackgroundWork(ProgramEnd &ending, QObject *parent)
    : QObject(parent)
    , m_ending(ending)
    , m_atEnd(ending.before([this] { join(); }))
{
    m_refresh.setInterval(50ms);
    connect(&m_refresh, &QTimer::timeout, this, &BackgroundWork::showLatest);
}

BackgroundWork::~BackgroundWork()
{
    m_ending.forget(m_atEnd);
    join();
}

void BackgroundWork::start(Work work)
{
    giveUp();
    m_running = true;
    m_latest = {};
    m_refresh.start();
    m_thread = std::jthread(
        [this, work = std::move(work)](const std::stop_token &stop) { run(stop, work); });
}

void BackgroundWork::finish()
{
    join();
    QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
}

void BackgroundWork::giveUp()
{
    join();
    ++m_round;
    m_running = false;
    m_refresh.stop();
}

void BackgroundWork::tell(std::function<void()> what)
{
    QMetaObject::invokeMethod(
        this,
        [this, round = m_round, what = std::move(what)] {
            if (round == m_round)
                what();
        },
        Qt::QueuedConnection);
}

void BackgroundWork::run(const std::stop_token &stop, const Work &work)
{
    const auto note = [this](int done, int total, const QString &what) {
        const std::scoped_lock lock(m_guard);
        m_latest = {done, total, what};
    };
    bool stopped = false;
    QString problem;
    try {
        trap([&](const QvError &error) { problem = error.description(); },
             [&] {
                 work({note, stop});
             });
    } catch (const Unwinding &) {
        stopped = true;
    }
    tell([this, stopped, problem] {
        showLatest();
        m_refresh.stop();
        m_running = false;
        Q_EMIT ended(stopped, problem);
    });
}

void BackgroundWork::join()
{
    m_thread.request_stop();
    if (m_thread.joinable())
        m_thread.join();
}

void BackgroundWork::showLatest()
{
    State latest;
    {
        const std::scoped_lock lock(m_guard);
        latest = m_latest;
    }
    Q_EMIT progressed(latest.done, latest.total, latest.what);
}
