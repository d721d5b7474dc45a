#pragma once

#include <string>
#include <vector>

// How our programs find each other's windows where the system offers no such thing: each announces
// its window by a local socket in a folder of the user's own. Without Qt, because the front program
// must answer faster than Qt loads.
//
// A request is five texts, each followed by a zero byte: what ("exists", "raise" or "close"),
// class, caption (an empty class or caption fits any window), kind and topic of a help request. The
// answer is "yes" or "no" and a zero byte: whether the window is meant.

struct WindowRequest
{
    std::string what;
    std::string className;
    std::string caption;
    std::string kind{};
    std::string topic{};
};

inline constexpr int windowRequestFields = 5;

/// Silent: a window took the request but is too busy to answer now; it will act on it later.
enum class WindowAnswer { NotMeant, Silent, Meant };

/// The folder of the user's sockets and instance locks, ending in "/"; made when missing. Empty
/// when there is none that only this user can write to.
std::string windowSocketFolder();

/// The sockets of other processes in the folder.
std::vector<std::string> otherWindowSockets();

/// Asks the window behind `socket`; waits at most 300 ms. A socket that nobody serves is removed.
WindowAnswer sendToWindow(const std::string &socket, const WindowRequest &request);

/// Asks one window after the other until one is meant; Silent when none is and one was silent.
WindowAnswer sendToWindows(const WindowRequest &request);
