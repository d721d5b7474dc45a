#pragma once

#include <QObject>
#include <QTimer>

#include <functional>
#include <mutex>
#include <thread>

struct Progress;
class ProgramEnd;

/// Work that takes long, on a thread of its own, while the window stays in use. How far it is, what
/// it tells and how it ended arrive on the window's thread. Destroying this, and the end of the
/// program, stop the work and wait for it.
class BackgroundWork final : public QObject
{
    Q_OBJECT

public:
    explicit BackgroundWork(ProgramEnd &ending, QObject *parent = nullptr);
    ~BackgroundWork() override;

    using Work = std::function<void(const Progress &)>;
    /// `work` touches no widget. What runs already is stopped first, and no more is heard of it.
    void start(Work work);
    void stop() { m_thread.request_stop(); } ///< `ended` follows
    /// Stops and waits; what was on its way has arrived when it returns.
    void finish();
    void giveUp(); ///< the same, and no more is heard of it
    [[nodiscard]] bool isRunning() const { return m_running; }

    /// For the work: does something on the window's thread, in the order told.
    void tell(std::function<void()> what);

Q_SIGNALS:
    void progressed(int done, int total, const QString &what);
    /// `problem` is why it ended early; "" when it did not or was stopped.
    void ended(bool stopped, const QString &problem);

private:
    struct State
    {
        int done = 0;
        int total = 0;
        QString what;
    };

    void run(const std::stop_token &stop, const Work &work);
    void join();
    void showLatest();

    ProgramEnd &m_ending;
    int m_atEnd; ///< number of what is done at the program's end
    QTimer m_refresh;
    int m_round = 0; ///< what is on its way from a round before is old
    bool m_running = false;
    std::mutex m_guard; ///< of m_latest, which the work writes
    State m_latest;
    std::jthread m_thread;
};
