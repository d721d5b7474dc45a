// What one program notices of another: windows, instances, the locks that it holds.
#include "Checks.h"
#include "platform/windows/win32/DesktopWindows.h"
#include "platform/windows/win32/Instance.h"

using namespace win32;
using namespace std::chrono_literals;

namespace {

/// This program once more, with an argument; its output is what comes through the pipe.
struct Second
{
    PROCESS_INFORMATION process{};
    Handle output;

    explicit Second(const std::wstring &argument)
    {
        SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
        HANDLE read = nullptr;
        HANDLE write = nullptr;
        CreatePipe(&read, &write, &inherited, 0);
        SetHandleInformation(read, HANDLE_FLAG_INHERIT, 0);
        output = Handle(read);
        Handle itsEnd(write);
        STARTUPINFOW start{};
        start.cb = sizeof(start);
        start.dwFlags = STARTF_USESTDHANDLES;
        start.hStdOutput = write;
        wchar_t own[MAX_PATH];
        GetModuleFileNameW(nullptr, own, MAX_PATH);
        std::wstring line = L'"' + std::wstring(own) + L"\" " + argument;
        CreateProcessW(own, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start,
                       &process);
    }
    ~Second()
    {
        TerminateProcess(process.hProcess, 99);
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
    }
    std::string line()
    {
        std::string text;
        char next = 0;
        DWORD got = 0;
        while (ReadFile(output.get(), &next, 1, &got, nullptr) && got == 1 && next != '\n') {
            if (next != '\r')
                text += next;
        }
        return text;
    }
    bool ends() const { return WaitForSingleObject(process.hProcess, 5000) == WAIT_OBJECT_0; }
};

constexpr auto indexClass = L"WindowsForms10.Window.8.app3";
constexpr auto indexCaption = L"Nairurda";

void windowsAreFoundRaisedAndClosed()
{
    CHECK(!windowExists(indexClass, indexCaption));
    CHECK(!closeWindow(indexClass, indexCaption));
    CHECK(!raiseWindow(indexCaption, {}));
    Second other(L"announce");
    CHECK(other.line() == "ready");
    CHECK(windowExists(indexClass, indexCaption));
    CHECK(windowExists({}, indexCaption));
    CHECK(!windowExists(L"Other", indexCaption));
    CHECK(!windowExists(indexClass, L"nairurda 2"));
    CHECK(raiseWindow(indexCaption, {L"Content", L"QVT@qv@S\u00fcd"}));
    CHECK(other.line()
          == "raise Content|QVT@qv@S\xc3\xbc"
             "d");
    SuspendThread(other.process.hThread);
    CHECK(!raiseWindow(indexCaption, {})); // it is busy, so that who asks may ask again
    ResumeThread(other.process.hThread);
    CHECK(raiseWindow(indexCaption, {}));
    CHECK(closeWindow(indexClass, indexCaption));
    std::string line = other.line();
    CHECK(line == "raise |");
    while (line == "raise |") // the first request may have come late, or not at all
        line = other.line();
    CHECK(line == "close");
    CHECK(other.ends());
    CHECK(!windowExists(indexClass, indexCaption));
}

void aLockEndsWithItsProgram()
{
    const std::wstring file = temporaryFolder() + L"adapters.lock";
    {
        Second other(L"lock");
        CHECK(other.line() == "locked");
        CHECK(!lockFile(file, 50ms).has_value());
    } // killed here
    CHECK(lockFile(file, 5s).has_value());
    removeFile(file);
}

/// A folder shown by Explorer has its name for a caption.
void foldersAreNoWindowsOfOurs()
{
    WNDCLASSW explorers{};
    explorers.lpfnWndProc = DefWindowProcW;
    explorers.hInstance = GetModuleHandleW(nullptr);
    explorers.lpszClassName = L"CabinetWClass";
    RegisterClassW(&explorers);
    const HWND folder = CreateWindowW(L"CabinetWClass", indexCaption, WS_POPUP, 0, 0, 0, 0, nullptr,
                                      nullptr, explorers.hInstance, nullptr);
    CHECK(folder != nullptr);
    CHECK(!windowExists({}, indexCaption));
    CHECK(!raiseWindow(indexCaption, {}));
    CHECK(windowExists(L"CabinetWClass", indexCaption));
    Second other(L"announce");
    CHECK(other.line() == "ready");
    CHECK(windowExists({}, indexCaption));
    DestroyWindow(folder);
}

void theSecondInstanceKnowsThatItIsOne()
{
    Second other(L"hold");
    CHECK(other.line() == "first");
    CHECK(Instance(L"check").isSecond());
    CHECK(!Instance(L"another").isSecond());
    CHECK(other.ends());
    CHECK(!Instance(L"check").isSecond());

    Nobody nobody;
    SECURITY_ATTRIBUTES denied{sizeof(SECURITY_ATTRIBUTES), &nobody.descriptor, FALSE};
    const Handle administrators(CreateMutexW(&denied, FALSE, L"Local\\Quovane.check"));
    CHECK(Instance(L"check").isSecond());
}

std::string utf8(const std::wstring &text)
{
    char bytes[256];
    const int size = WideCharToMultiByte(CP_UTF8, 0, text.data(), int(text.size()), bytes,
                                         int(sizeof(bytes)), nullptr, nullptr);
    return {bytes, size_t(size)};
}

void say(const std::string &line)
{
    std::puts(line.c_str());
    std::fflush(stdout);
}

int announce()
{
    const Announcement window(indexClass, indexCaption,
                              {[](const HelpRequest &request) {
                                   say("raise " + utf8(request.kind) + '|' + utf8(request.topic));
                               },
                               [] {
                                   say("close");
                                   PostQuitMessage(0);
                               }});
    say(window.isMade() ? "ready" : "no window");
    MSG message{};
    while (GetMessageW(&message, nullptr, 0, 0) > 0)
        DispatchMessageW(&message);
    return 0;
}

int holdLock()
{
    const auto held = lockFile(temporaryFolder() + L"adapters.lock", 0ms);
    say(held ? "locked" : "not locked");
    Sleep(60'000);
    return 0;
}

int holdInstance()
{
    const Instance instance(L"check");
    say(instance.isSecond() ? "second" : "first");
    Sleep(1000);
    return 0;
}

} // namespace

void checkPrograms()
{
    aLockEndsWithItsProgram();
    windowsAreFoundRaisedAndClosed();
    foldersAreNoWindowsOfOurs();
    theSecondInstanceKnowsThatItIsOne();
}

int serve(const std::string &mode)
{
    if (mode == "announce")
        return announce();
    return mode == "hold" ? holdInstance() : holdLock();
}
