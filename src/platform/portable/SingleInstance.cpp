#include "platform/portable/SingleInstance.h"

#include "platform/portable/WindowSockets.h"

#include <fcntl.h>
#include <poll.h>

#include <cerrno>

namespace {

Descriptor openLock(const std::string &program)
{
    const std::string folder = windowSocketFolder();
    if (folder.empty())
        return Descriptor();
    const std::string path = folder + program + ".instance";
    return Descriptor(open(path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600));
}

struct flock wholeFile()
{
    struct flock range
    {
    };
    range.l_type = F_WRLCK;
    range.l_whence = SEEK_SET;
    return range;
}

} // namespace

SingleInstance::SingleInstance(const std::string &program)
    : m_lock(openLock(program))
{
    struct flock range = wholeFile();
    const bool refused = m_lock.isOpen() && fcntl(m_lock.get(), F_OFD_SETLK, &range) != 0;
    m_previous = refused && (errno == EAGAIN || errno == EACCES);
}

bool SingleInstance::isRunning(const std::string &program)
{
    const Descriptor lock = openLock(program);
    struct flock range = wholeFile();
    return lock.isOpen() && fcntl(lock.get(), F_OFD_GETLK, &range) == 0 && range.l_type != F_UNLCK;
}

bool SingleInstance::handOver(const std::string &program, const std::string &caption)
{
    const WindowRequest request{.what = "raise", .className = program, .caption = caption};
    for (int attempt = 0; attempt < 100; ++attempt) {
        if (sendToWindows(request) != WindowAnswer::NotMeant)
            return true;
        poll(nullptr, 0, 20); // milliseconds
    }
    return false;
}
