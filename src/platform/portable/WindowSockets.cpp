#include "platform/portable/WindowSockets.h"

#include "platform/portable/Descriptor.h"

#include <dirent.h>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace {

using Moment = std::chrono::steady_clock::time_point;

constexpr auto patience = std::chrono::milliseconds(300);

bool isOurOwnFolder(const std::string &folder)
{
    struct stat info
    {
    };
    return lstat(folder.c_str(), &info) == 0 && S_ISDIR(info.st_mode) && info.st_uid == geteuid()
           && (info.st_mode & 077) == 0;
}

bool waitFor(int socket, short events, Moment end)
{
    using std::chrono::milliseconds;
    const auto left =
        std::chrono::duration_cast<milliseconds>(end - std::chrono::steady_clock::now());
    pollfd wanted{socket, events, 0};
    return poll(&wanted, 1, int(std::max(left, milliseconds(0)).count())) > 0;
}

/// Sockets are called "<process number>-<number>.window".
bool isDead(const std::string &socket)
{
    const int process = std::atoi(socket.c_str() + socket.rfind('/') + 1);
    return process > 0 && kill(process, 0) != 0 && errno == ESRCH;
}

Descriptor connectTo(const std::string &path, Moment end)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof(address.sun_path))
        return Descriptor();
    std::memcpy(address.sun_path, path.c_str(), path.size());
    Descriptor connection(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    const auto *target = reinterpret_cast<const sockaddr *>(&address);
    while (connect(connection.get(), target, sizeof(address)) != 0) {
        const int reason = errno;
        if (reason == ECONNREFUSED && isDead(path))
            unlink(path.c_str());
        if (reason != EAGAIN || std::chrono::steady_clock::now() >= end)
            return Descriptor();
        poll(nullptr, 0, 5); // too many wait for this window already
    }
    return connection;
}

std::string bytesOf(const WindowRequest &request)
{
    std::string bytes;
    for (const auto *field :
         {&request.what, &request.className, &request.caption, &request.kind, &request.topic}) {
        bytes += field->c_str(); // nothing behind a zero byte
        bytes += '\0';
    }
    return bytes;
}

bool sendAll(int socket, const std::string &bytes, Moment end)
{
    for (size_t sent = 0; sent < bytes.size();) {
        const ssize_t count =
            send(socket, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count > 0)
            sent += size_t(count);
        else if (!waitFor(socket, POLLOUT, end))
            return false;
    }
    return true;
}

std::string receiveAnswer(int socket, Moment end)
{
    std::string answer;
    char piece[16];
    while (waitFor(socket, POLLIN, end)) {
        const ssize_t count = recv(socket, piece, sizeof(piece), MSG_DONTWAIT);
        if (count <= 0)
            break;
        answer.append(piece, size_t(count));
        if (answer.back() == '\0')
            return answer.c_str();
    }
    return {};
}

} // namespace

std::string windowSocketFolder()
{
    std::vector<std::string> folders{"/tmp/quovane-" + std::to_string(geteuid()) + '/'};
    const char *runtime = std::getenv("XDG_RUNTIME_DIR");
    if (runtime != nullptr && runtime[0] == '/')
        folders.insert(folders.begin(), std::string(runtime) + "/quovane/");
    for (const std::string &folder : folders) {
        const std::string name = folder.substr(0, folder.size() - 1);
        mkdir(name.c_str(), 0700);
        if (isOurOwnFolder(name))
            return folder;
    }
    return {};
}

std::vector<std::string> otherWindowSockets()
{
    const std::string folder = windowSocketFolder();
    const std::string own = std::to_string(getpid()) + '-';
    std::vector<std::string> sockets;
    const std::unique_ptr<DIR, int (*)(DIR *)> listing(opendir(folder.c_str()), closedir);
    while (const dirent *entry = listing ? readdir(listing.get()) : nullptr) {
        const std::string name = entry->d_name;
        if (name.ends_with(".window") && !name.starts_with(own))
            sockets.push_back(folder + name);
    }
    std::sort(sockets.begin(), sockets.end());
    return sockets;
}

WindowAnswer sendToWindow(const std::string &socket, const WindowRequest &request)
{
    const Moment end = std::chrono::steady_clock::now() + patience;
    const Descriptor connection = connectTo(socket, end);
    if (!connection.isOpen() || !sendAll(connection.get(), bytesOf(request), end))
        return WindowAnswer::NotMeant;
    const std::string answer = receiveAnswer(connection.get(), end);
    if (answer.empty())
        return WindowAnswer::Silent;
    return answer == "yes" ? WindowAnswer::Meant : WindowAnswer::NotMeant;
}

WindowAnswer sendToWindows(const WindowRequest &request)
{
    WindowAnswer best = WindowAnswer::NotMeant;
    for (const std::string &socket : otherWindowSockets()) {
        best = std::max(best, sendToWindow(socket, request));
        if (best == WindowAnswer::Meant)
            break;
    }
    return best;
}
