#include "controls/pages/KeptPlace.h"

#include "platform/QvError.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr auto lockEnding = ".lock"_L1;

QString lockOf(const QString &path)
{
    return path + lockEnding;
}

} // namespace

std::unique_ptr<KeptPlace> KeptPlace::claim(FileSystem &files, const QString &path,
                                            const QString &like)
{
    auto lock = files.lock(lockOf(path), like, std::chrono::milliseconds(0));
    return lock ? std::make_unique<KeptPlace>(files, path, std::move(lock)) : nullptr;
}

std::unique_ptr<KeptPlace> KeptPlace::take(FileSystem &files, const QString &path,
                                           const QString &like)
{
    std::unique_ptr<KeptPlace> unlocked;
    const auto goOn = [&](const QvError &) {
        unlocked = std::make_unique<KeptPlace>(files, path, nullptr);
    };
    auto locked = trap(goOn, [&] { return claim(files, path, like); });
    return unlocked ? std::move(unlocked) : std::move(locked);
}

KeptPlace::KeptPlace(FileSystem &files, QString path, std::unique_ptr<FileLock> lock)
    : m_files(files)
    , m_path(std::move(path))
    , m_lock(std::move(lock))
{
}

KeptPlace::~KeptPlace()
{
    const auto goOn = [](const QvError &) {}; // the next one who looks removes it
    trap(goOn, [this] {
        if (m_files.exists(lockOf(m_path)))
            m_files.removeFile(lockOf(m_path), true);
    });
}

Keeper keeperOf(FileSystem &files, const QString &path)
{
    Keeper keeper = Keeper::Unknown;
    trap([](const QvError &) {},
         [&] {
             const bool isFree =
                 !files.exists(lockOf(path)) || KeptPlace::claim(files, path, path) != nullptr;
             keeper = isFree ? Keeper::Gone : Keeper::Running;
         });
    return keeper;
}

QString fileOfLock(const QString &path)
{
    return path.endsWith(lockEnding) ? path.chopped(lockEnding.size()) : QString();
}
