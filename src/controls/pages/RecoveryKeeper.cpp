#include "controls/pages/RecoveryKeeper.h"

#include "platform/QvError.h"

#include <utility>

namespace {
constexpr int restTime = 3'000; // milliseconds without a key
constexpr int longest = 10'000; // milliseconds of typing
} // namespace

RecoveryKeeper::RecoveryKeeper(FileSystem &files, Text text, QObject *parent)
    : QObject(parent)
    , m_files(files)
    , m_text(std::move(text))
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &RecoveryKeeper::keepSoon);
}

RecoveryKeeper::~RecoveryKeeper() = default;

void RecoveryKeeper::begin(const QString &projectFolder, const QString &page)
{
    settle();
    m_folder = projectFolder;
    m_page = page;
    m_place.reset();
}

void RecoveryKeeper::textChanged()
{
    if (m_page.isEmpty())
        return;
    if (!m_unkept.isValid())
        m_unkept.start();
    const qint64 left = longest - m_unkept.elapsed();
    m_timer.start(static_cast<int>(qBound(qint64(0), left, qint64(restTime))));
}

void RecoveryKeeper::keepSoon()
{
    m_unkept.invalidate();
    const auto text = m_text();
    if (!text)
        return;
    {
        const std::lock_guard guard(m_guard);
        m_order = {m_folder, m_page, *text};
    }
    if (!m_thread.joinable())
        m_thread = std::jthread([this](const std::stop_token &stop) { work(stop); });
    m_news.notify_all();
}

void RecoveryKeeper::work(const std::stop_token &stop)
{
    std::unique_lock guard(m_guard);
    while (m_news.wait(guard, stop, [this] { return m_order.has_value(); })) {
        const Order order = *std::exchange(m_order, std::nullopt);
        m_busy = true;
        guard.unlock();
        // A disk that is full now may not be in ten seconds; saving will speak of it.
        trap([](const QvError &) {}, [&] { keep(order); });
        guard.lock();
        m_busy = false;
        m_news.notify_all();
    }
}

// Only this thread changes the place while it is busy, and only the other one while it is not.
void RecoveryKeeper::keep(const Order &order)
{
    KeptTexts texts(m_files);
    if (!m_place) {
        auto taken = texts.take(order.folder, order.page);
        const std::lock_guard guard(m_guard);
        m_place = std::move(taken);
    }
    texts.keep(*m_place, order.text);
}

QString RecoveryKeeper::place()
{
    const std::lock_guard guard(m_guard);
    return m_place ? m_place->path() : QString();
}

void RecoveryKeeper::settle()
{
    m_timer.stop();
    m_unkept.invalidate();
    std::unique_lock guard(m_guard);
    m_order.reset();
    m_news.wait(guard, [this] { return !m_busy; });
}

void RecoveryKeeper::keepNow(const QString &text)
{
    settle();
    keep({m_folder, m_page, text});
}

void RecoveryKeeper::forget()
{
    settle();
    if (!m_place)
        return;
    trap([](const QvError &) {}, [this] { KeptTexts(m_files).forget(*m_place); });
    m_place.reset();
}
