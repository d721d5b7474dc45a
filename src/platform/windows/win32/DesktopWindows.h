#pragma once

#include "platform/windows/win32/Win32Error.h"

#include <functional>
#include <string>

// Windows of other programs on this desktop, by class and caption. An empty class means any but
// the folders that Explorer shows, whose captions are the folders' names.

namespace win32 {

/// A request for help that goes with raising a window: its kind and its topic.
struct HelpRequest
{
    std::wstring kind;
    std::wstring topic;
};

[[nodiscard]] bool windowExists(const std::wstring &className, const std::wstring &caption);

/// To the front, maximized. A window of ours, which an Announcement stands for, gets the request
/// and raises itself; another one is maximized as it is. False when there is none, or ours is too
/// busy to answer now.
bool raiseWindow(const std::wstring &caption, const HelpRequest &request);

/// Posts the message of the close box. False when there is none.
bool closeWindow(const std::wstring &className, const std::wstring &caption);

/// Makes this program be found under a class and a caption by those who look for windows: a
/// top-level window that nobody sees, which passes on what it is asked. Lives on the thread that
/// made it, which must handle its messages.
class Announcement final
{
public:
    struct Answers
    {
        std::function<void(const HelpRequest &)> raise;
        std::function<void()> close;
    };
    Announcement(std::wstring className, const std::wstring &caption, Answers answers);
    Announcement(const Announcement &) = delete;
    Announcement &operator=(const Announcement &) = delete;
    ~Announcement();

    /// False when the system let it make no window: nobody will find this program.
    [[nodiscard]] bool isMade() const { return m_window != nullptr; }

private:
    static LRESULT CALLBACK handle(HWND window, UINT message, WPARAM wide, LPARAM more);

    std::wstring m_className;
    Answers m_answers;
    HWND m_window = nullptr;
};

} // namespace win32
