#include "controls/session/ChangeWatch.h"

#include "platform/QvError.h"

namespace {
constexpr std::chrono::seconds interval{3};
}

ChangeWatch::ChangeWatch(FileSystem &files, QObject *parent)
    : QObject(parent)
    , m_files(files)
{
}

ChangeWatch::~ChangeWatch() = default;

void ChangeWatch::watch(const QString &path, const std::optional<FileStamp> &stamp)
{
    const std::scoped_lock lock(m_mutex);
    m_watched.insert(path.toCaseFolded(), {path, stamp, ++m_serial});
    if (!m_thread.joinable())
        m_thread = std::jthread([this](const std::stop_token &stop) { run(stop); });
}

void ChangeWatch::forget(const QString &path)
{
    const std::scoped_lock lock(m_mutex);
    m_watched.remove(path.toCaseFolded());
}

void ChangeWatch::forgetAll()
{
    const std::scoped_lock lock(m_mutex);
    m_watched.clear();
}

QStringList ChangeWatch::watched() const
{
    const std::scoped_lock lock(m_mutex);
    QStringList paths;
    for (const Watched &file : m_watched)
        paths.append(file.path);
    return paths;
}

void ChangeWatch::lookNow()
{
    const std::scoped_lock lock(m_mutex);
    m_isAsked = true;
    m_wake.notify_one();
}

void ChangeWatch::run(const std::stop_token &stop)
{
    while (!stop.stop_requested()) {
        std::unique_lock lock(m_mutex);
        m_wake.wait_for(lock, stop, interval, [this] { return m_isAsked; });
        m_isAsked = false;
        const Files known = m_watched;
        lock.unlock();
        look(known, stop);
    }
}

void ChangeWatch::look(const Files &known, const std::stop_token &stop)
{
    Files news;
    for (auto file = known.cbegin(); file != known.cend(); ++file) {
        const std::scoped_lock looking(m_looking);
        if (stop.stop_requested() || m_pauses > 0)
            return;
        Watched seen = *file;
        // A share that does not answer is no news; the next command that needs it says so.
        trap([](const QvError &) {}, [&] { seen.stamp = stampOf(m_files, seen.path); });
        if (seen.stamp != file->stamp)
            news.insert(file.key(), seen);
    }
    if (!news.isEmpty())
        QMetaObject::invokeMethod(
            this, [this, news] { deliver(news); }, Qt::QueuedConnection);
}

// What was watched anew since the look, after a command of ours for example, is no news.
void ChangeWatch::deliver(const Files &seen)
{
    if (m_pauses > 0)
        return; // it is found again at the next look
    QStringList changes;
    std::unique_lock lock(m_mutex);
    for (auto file = seen.cbegin(); file != seen.cend(); ++file) {
        const auto known = m_watched.find(file.key());
        if (known == m_watched.end() || known->serial != file->serial)
            continue;
        if (known->stamp && known->stamp != file->stamp)
            changes.append(known->path);
        known->stamp = file->stamp;
    }
    lock.unlock();
    if (!changes.isEmpty())
        Q_EMIT changed(changes);
}

ChangeWatch::Pause::Pause(ChangeWatch &watch)
    : m_watch(watch)
{
    ++m_watch.m_pauses;
    const std::scoped_lock untilLookedAt(m_watch.m_looking);
}

ChangeWatch::Pause::~Pause()
{
    --m_watch.m_pauses;
}
