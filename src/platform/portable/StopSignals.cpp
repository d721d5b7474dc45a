#include "platform/portable/StopSignals.h"

#include "platform/QvError.h"

#include <array>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr std::array stopSignals{SIGINT, SIGTERM};
constexpr char stopAsked = 's';
constexpr char noMore = 'e';

volatile sig_atomic_t tellTo = -1;

void tell(int pipe, char what)
{
    while (::write(pipe, &what, 1) < 0 && errno == EINTR) {
    }
}

extern "C" void askToStop(int)
{
    const int error = errno;
    tell(tellTo, stopAsked);
    errno = error;
}

/// What was told next; `noMore` when nothing can come.
char heardOn(int pipe)
{
    char what = noMore;
    while (::read(pipe, &what, 1) < 0 && errno == EINTR) {
    }
    return what;
}

} // namespace

StopSignals::Pipe StopSignals::makePipe()
{
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        throw QvError(PathFileAccess, {}, QStringLiteral("The system has no pipe left for Stop"));
    return {Descriptor(ends[0]), Descriptor(ends[1])};
}

StopSignals::StopSignals()
    : m_listener([this] {
        while (heardOn(m_pipe.asked.get()) == stopAsked)
            m_stop.request_stop();
    })
{
    tellTo = m_pipe.told.get();
    struct sigaction action = {};
    action.sa_handler = askToStop;
    action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
    for (const int signal : stopSignals)
        ::sigaction(signal, &action, nullptr);
}

StopSignals::~StopSignals()
{
    for (const int signal : stopSignals)
        std::signal(signal, SIG_DFL);
    tell(m_pipe.told.get(), noMore);
    m_listener.join();
}
