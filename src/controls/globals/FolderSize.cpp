#include "controls/globals/FolderSize.h"

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "platform/TreeWalker.h"

#include <chrono>
#include <optional>

using namespace std::chrono_literals;

namespace {

struct Size
{
    int files = 0;
    qint64 bytes = 0;
};

/// Nothing when stopped, or when the folder cannot be read to its end.
std::optional<Size> sizeOf(FileSystem &files, const QString &folder, const std::stop_token &stop)
{
    Size size;
    try {
        walkTree(files, folder, [&](const TreeEntry &entry) {
            if (stop.stop_requested())
                throw Unwinding{Unwinding::Reason::Stopped};
            if (entry.status.kind == FileKind::File) {
                ++size.files;
                size.bytes += entry.status.size;
            }
        });
    } catch (...) {
        return std::nullopt;
    }
    return size;
}

} // namespace

FolderSize::FolderSize(FileSystem &files, QObject *parent)
    : QObject(parent)
    , m_files(files)
{
    m_later.setSingleShot(true);
    m_later.setInterval(500ms);
    connect(&m_later, &QTimer::timeout, this, &FolderSize::begin);
}

FolderSize::~FolderSize() = default;

void FolderSize::count(const QString &folder)
{
    ++m_round;
    m_worker = {};
    m_folder = withoutBackslash(folder);
    if (folder.isEmpty())
        m_later.stop();
    else
        m_later.start();
}

void FolderSize::begin()
{
    m_worker = std::jthread([this, round = m_round, path = m_folder](const std::stop_token &stop) {
        const auto size = sizeOf(m_files, path, stop);
        if (!size)
            return;
        QMetaObject::invokeMethod(this, [this, round, size = *size] {
            if (round == m_round)
                Q_EMIT counted(size.files, size.bytes);
        });
    });
}
