#pragma once

#include "projectfiles/changes/FileChanges.h"

#include <QHash>
#include <QObject>

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

/// Looks every few seconds whether somebody else changed one of the watched files. It does so on a
/// thread of its own, because a share may take its time to answer; it tells on the thread it
/// belongs to.
class ChangeWatch final : public QObject
{
    Q_OBJECT

public:
    explicit ChangeWatch(FileSystem &files, QObject *parent = nullptr);
    ~ChangeWatch() override;

    /// Watches a file that looked like `stamp`, or looks as at the first look; instead of what was
    /// known of it before.
    void watch(const QString &path, const std::optional<FileStamp> &stamp = {});
    void forget(const QString &path);
    void forgetAll();
    [[nodiscard]] QStringList watched() const;

    /// Looks at once and does not wait for it.
    void lookNow();

    /// While it lives, no file is looked at and nothing is told: a command is at work.
    class Pause final
    {
    public:
        explicit Pause(ChangeWatch &watch);
        Pause(const Pause &) = delete;
        Pause &operator=(const Pause &) = delete;
        ~Pause();

    private:
        ChangeWatch &m_watch;
    };

Q_SIGNALS:
    /// Watched files that look different now; each change is told once.
    void changed(const QStringList &paths);

private:
    struct Watched
    {
        QString path;
        std::optional<FileStamp> stamp;
        quint64 serial = 0; ///< another one each time it is watched anew
    };
    using Files = QHash<QString, Watched>; ///< by folded path

    void run(const std::stop_token &stop);
    void look(const Files &known, const std::stop_token &stop);
    void deliver(const Files &seen);

    FileSystem &m_files;
    mutable std::mutex m_mutex; ///< of the members below
    std::condition_variable_any m_wake;
    Files m_watched;
    quint64 m_serial = 0;
    bool m_isAsked = false;
    std::mutex m_looking; ///< held while a file is looked at
    std::atomic<int> m_pauses = 0;
    std::jthread m_thread; ///< from the first file on; ends before the rest goes
};
