#include "platform/windows/win32/DesktopWindows.h"

#include <cstring>
#include <vector>

namespace win32 {

namespace {

constexpr ULONG_PTR helpRequest = 0x51561; // what WM_COPYDATA carries: kind, zero, topic, zero
constexpr auto mark = L"QuovaneAnnouncement";
constexpr UINT patience = 300; // milliseconds

bool showsFolder(HWND window)
{
    wchar_t className[32]{};
    GetClassNameW(window, className, int(std::size(className)));
    return className == std::wstring(L"CabinetWClass");
}

HWND findWindow(const std::wstring &className, const std::wstring &caption)
{
    if (!className.empty())
        return FindWindowW(className.c_str(), caption.c_str());
    HWND window = nullptr;
    do {
        window = FindWindowExW(nullptr, window, nullptr, caption.c_str());
    } while (window != nullptr && showsFolder(window));
    return window;
}

/// The announcement among all windows of a caption; null when no program of ours has it.
HWND findAnnouncement(const std::wstring &caption)
{
    for (HWND window = nullptr;
         (window = FindWindowExW(nullptr, window, nullptr, caption.c_str())) != nullptr;) {
        if (GetPropW(window, mark) != nullptr)
            return window;
    }
    return nullptr;
}

bool send(HWND window, const HelpRequest &request)
{
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    AllowSetForegroundWindow(process);
    std::wstring text = request.kind.c_str();
    text += L'\0';
    text += request.topic.c_str();
    text += L'\0';
    COPYDATASTRUCT data{helpRequest, DWORD(text.size() * sizeof(wchar_t)), text.data()};
    return SendMessageTimeoutW(window, WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&data), SMTO_NORMAL,
                               patience, nullptr)
           != 0;
}

/// Whatever the sender sent, the texts end inside it.
HelpRequest requestOf(const COPYDATASTRUCT &data)
{
    std::vector<wchar_t> text(data.cbData / sizeof(wchar_t) + 2, L'\0');
    std::memcpy(text.data(), data.lpData, (text.size() - 2) * sizeof(wchar_t));
    HelpRequest request;
    request.kind = text.data();
    if (const size_t next = request.kind.size() + 1; next < text.size())
        request.topic = text.data() + next;
    return request;
}

} // namespace

bool windowExists(const std::wstring &className, const std::wstring &caption)
{
    return findWindow(className, caption) != nullptr;
}

bool raiseWindow(const std::wstring &caption, const HelpRequest &request)
{
    if (const HWND ours = findAnnouncement(caption))
        return send(ours, request);
    const HWND window = findWindow({}, caption);
    if (window == nullptr)
        return false;
    ShowWindowAsync(window, SW_SHOWMAXIMIZED);
    SetForegroundWindow(window);
    return true;
}

bool closeWindow(const std::wstring &className, const std::wstring &caption)
{
    const HWND window = findWindow(className, caption);
    return window != nullptr && PostMessageW(window, WM_CLOSE, 0, 0);
}

Announcement::Announcement(std::wstring className, const std::wstring &caption, Answers answers)
    : m_className(std::move(className))
    , m_answers(std::move(answers))
{
    const HINSTANCE program = GetModuleHandleW(nullptr);
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = handle;
    windowClass.hInstance = program;
    windowClass.lpszClassName = m_className.c_str();
    RegisterClassW(&windowClass);
    m_window = CreateWindowExW(WS_EX_TOOLWINDOW, m_className.c_str(), caption.c_str(), WS_POPUP, 0,
                               0, 0, 0, nullptr, nullptr, program, nullptr);
    if (m_window == nullptr)
        return;
    SetWindowLongPtrW(m_window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    SetPropW(m_window, mark, reinterpret_cast<HANDLE>(1));
    // Run by an administrator it hears those who are none, too.
    ChangeWindowMessageFilterEx(m_window, WM_COPYDATA, MSGFLT_ALLOW, nullptr);
}

Announcement::~Announcement()
{
    if (m_window != nullptr) {
        RemovePropW(m_window, mark);
        DestroyWindow(m_window);
    }
    UnregisterClassW(m_className.c_str(), GetModuleHandleW(nullptr));
}

LRESULT CALLBACK Announcement::handle(HWND window, UINT message, WPARAM wide, LPARAM more)
{
    const auto *self =
        reinterpret_cast<const Announcement *>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self != nullptr && message == WM_CLOSE) {
        self->m_answers.close();
        return 0;
    }
    const auto *data = reinterpret_cast<const COPYDATASTRUCT *>(more);
    if (self != nullptr && message == WM_COPYDATA && data->dwData == helpRequest) {
        self->m_answers.raise(requestOf(*data));
        return TRUE;
    }
    return DefWindowProcW(window, message, wide, more);
}

} // namespace win32
