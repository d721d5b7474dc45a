// The system calls under the Windows adapters, without Qt, so that they can be checked wherever
// mingw and Wine are. Prints what fails; the exit status is the number of failures.
//   adapters             runs the checks
//   adapters announce    announces a window, says what is asked of it, ends when asked to close
//   adapters hold NAME   is the instance NAME for a second
//   adapters lock        holds the lock "adapters.lock" in the temporary folder until it is ended
#include "platform/windows/win32/FileChanges.h"
#include "platform/windows/win32/Files.h"
#include "platform/windows/win32/Instance.h"
#include "platform/windows/win32/RegistryKeys.h"
#include "platform/windows/win32/Replacement.h"
#include "platform/windows/win32/Windows.h"

#include <sddl.h>

#include <cstdio>
#include <string>
#include <thread>

using namespace win32;
using namespace std::chrono_literals;

namespace {

int failures = 0;

#define CHECK(...) check((__VA_ARGS__), #__VA_ARGS__, __LINE__)

void check(bool good, const char *what, int line)
{
    if (good)
        return;
    ++failures;
    std::printf("line %d: %s\n", line, what);
}

/// What the call raises, or ERROR_SUCCESS.
template <typename Call>
DWORD raised(Call call)
{
    try {
        call();
    } catch (const Error &error) {
        return error.code;
    }
    return ERROR_SUCCESS;
}

void put(const std::wstring &path, const std::string &content, ReplaceOptions options = {})
{
    Replacement file(path, options);
    file.write(0, content.data(), std::int64_t(content.size()));
    file.putInPlace();
}

std::string contentOf(const std::wstring &path)
{
    std::int64_t size = 0;
    const Handle file = openToRead(path, size);
    std::string content(size_t(size), '\0');
    content.resize(size_t(readAt(file.get(), 0, content.data(), size)));
    return content;
}

std::wstring namesIn(const std::wstring &folder)
{
    std::wstring names;
    for (const Entry &entry : entries(folder))
        names += entry.name + L'|';
    return names;
}

void removeTree(const std::wstring &folder)
{
    for (const Entry &entry : entries(folder)) {
        const std::wstring path = folder + L'\\' + entry.name;
        if (entry.status.kind == Kind::Folder)
            removeTree(path);
        else
            removeFile(path);
    }
    removeFolder(folder);
}

std::wstring temporaryFolder()
{
    wchar_t folder[MAX_PATH];
    GetTempPathW(MAX_PATH, folder);
    return folder;
}

Handle openWithoutSharing(const std::wstring &path)
{
    return Handle(CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
}

/// A folder of its own that goes at the end.
struct Folder
{
    std::wstring path;

    Folder()
    {
        path = temporaryFolder() + L"qv adapters " + std::to_wstring(GetTickCount64());
        makeFolder(path);
    }
    ~Folder()
    {
        if (const DWORD code = raised([&] { removeTree(path); }); code != ERROR_SUCCESS) {
            ++failures;
            std::printf("the folder cannot be removed: error %lu\n", code);
        }
    }
    std::wstring operator/(const std::wstring &name) const { return path + L'\\' + name; }
};

void aReplacedFileIsWhole(const Folder &folder)
{
    const std::wstring file = folder / L"QV_Toc.xml";
    put(file, "old");
    put(file, "new content");
    CHECK(contentOf(file) == "new content");
    CHECK(status(file).size == 11);
    {
        Replacement broken(file, {});
        broken.write(0, "half", 4);
    }
    CHECK(contentOf(file) == "new content");
    CHECK(namesIn(folder.path) == L"QV_Toc.xml|");

    put(folder / L"QV_TOC.XML", "new content"); // the name stays as it is spelled
    CHECK(namesIn(folder.path) == L"QV_Toc.xml|");

    setAttributes(file, FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN);
    CHECK(raised([&] { put(file, "x"); }) == ERROR_ACCESS_DENIED);
    flushFile(file);
    CHECK(contentOf(file) == "new content");
    put(file, "through", {true, true});
    CHECK(contentOf(file) == "through");
    CHECK((status(file).attributes & 3) == (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN));
    removeFile(file);
    CHECK(status(file).kind == Kind::Missing);
    CHECK(raised([&] { put(folder / L"none\\x", "x"); }) == ERROR_PATH_NOT_FOUND);
}

/// On a shared disk the process of another machine may have our number.
void nobodyElsesTemporaryFileIsTaken(const Folder &folder)
{
    const std::wstring file = folder / L"QV_Toc.xml";
    const std::wstring theirs = file + L".qvtmp" + std::to_wstring(GetCurrentProcessId());
    put(theirs, "theirs");
    put(file, "ours");
    CHECK(contentOf(file) == "ours");
    CHECK(contentOf(theirs) == "theirs");
    CHECK(entries(folder.path).size() == 2);

    const std::wstring longest = folder / std::wstring(255, L'n');
    put(longest, "long");
    CHECK(contentOf(longest) == "long");
}

std::string rightsOf(const std::wstring &path)
{
    DWORD size = 0;
    GetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
    std::string rights(size, '\0');
    GetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, rights.data(), size, &size);
    return rights;
}

void aReplacedFileKeepsItsRights(const Folder &folder)
{
    const std::wstring file = folder / L"QV_Toc.xml";
    put(file, "old");
    const std::string before = rightsOf(file);
    PSECURITY_DESCRIPTOR everybody = nullptr;
    CHECK(ConvertStringSecurityDescriptorToSecurityDescriptorW(L"D:P(A;;FA;;;WD)", SDDL_REVISION_1,
                                                               &everybody, nullptr));
    CHECK(SetFileSecurityW(file.c_str(), DACL_SECURITY_INFORMATION, everybody));
    LocalFree(everybody);
    const std::string own = rightsOf(file);
    CHECK(own != before);
    put(file, "new");
    CHECK(rightsOf(file) == own);
}

void aFileThatSomebodyReadsIsWaitedFor(const Folder &folder)
{
    const std::wstring file = folder / L"busy.xml";
    put(file, "old");
    std::thread reader([&, held = openWithoutSharing(file)]() mutable {
        std::this_thread::sleep_for(400ms);
        held.close();
    });
    put(file, "new");
    reader.join();
    CHECK(contentOf(file) == "new");
    const Handle held = openWithoutSharing(file);
    CHECK(raised([&] { put(file, "never"); }) == ERROR_SHARING_VIOLATION);
    CHECK(namesIn(folder.path) == L"busy.xml|");
}

/// What is deleted while it is open stays in its folder until it is closed.
void aFolderWaitsForWhatWasDeletedInIt(const Folder &folder)
{
    const std::wstring inner = folder / L"inner";
    makeFolder(inner);
    put(inner + L"\\read.htm", "page");
    std::int64_t size = 0;
    std::thread reader([held = openToRead(inner + L"\\read.htm", size)]() mutable {
        std::this_thread::sleep_for(400ms);
        held.close();
    });
    removeFile(inner + L"\\read.htm");
    CHECK(raised([&] { removeFolder(inner); }) == ERROR_SUCCESS);
    reader.join();
    CHECK(namesIn(folder.path).empty());
}

void namesKeepTheirCapitalsAndAnyLength(const Folder &folder)
{
    std::wstring deep = folder.path;
    for (int level = 0; level < 8; ++level) {
        deep += L'\\' + std::wstring(60, L'a') + std::to_wstring(level);
        makeFolder(deep);
    }
    const std::wstring page = deep + L"\\S\u00fcd \u6587.htm";
    put(page, "page");
    CHECK(deep.size() > 500);
    CHECK(contentOf(page) == "page");
    copyFile(page, deep + L"\\copy.htm");
    CHECK(raised([&] { copyFile(page, deep + L"\\copy.htm"); }) == ERROR_FILE_EXISTS);
    CHECK(status(deep + L"\\COPY.HTM").kind == Kind::File);
    move(deep + L"\\copy.htm", deep + L"\\Copy.htm");
    CHECK(namesIn(deep).starts_with(L"Copy.htm|"));
    CHECK(raised([&] { move(page, deep + L"\\Copy.htm"); }) == ERROR_ALREADY_EXISTS);
    CHECK(raised([&] { removeFolder(deep); }) == ERROR_DIR_NOT_EMPTY);
    CHECK(status(folder / L"a*b?.htm").kind == Kind::Missing);
}

void linksAreNeverFollowed(const Folder &folder)
{
    const std::wstring target = folder / L"target";
    makeFolder(target);
    put(target + L"\\kept.txt", "kept");
    const std::wstring link = folder / L"link";
    const DWORD kind = SYMBOLIC_LINK_FLAG_DIRECTORY | SYMBOLIC_LINK_FLAG_ALLOW_UNPRIVILEGED_CREATE;
    if (!CreateSymbolicLinkW(link.c_str(), target.c_str(), kind)
        || status(link).kind == Kind::Missing) { // Wine only says that it did
        std::printf("not checked: this system makes no symbolic links\n");
        return;
    }
    CHECK(status(link).kind == Kind::Link);
    CHECK(raised([&] { (void)entries(link); }) != ERROR_SUCCESS);
    CHECK(raised([&] { setAttributes(link, FILE_ATTRIBUTE_READONLY); }) != ERROR_SUCCESS);
    removeFile(link);
    CHECK(contentOf(target + L"\\kept.txt") == "kept");
}

void aLockKeepsOthersOut(const Folder &folder)
{
    const std::wstring file = folder / L"QV_Selection.xml.lock";
    {
        const auto first = lockFile(file, 0ms);
        CHECK(first.has_value());
        CHECK(!lockFile(file, 50ms).has_value());
        CHECK(contentOf(file).empty());
    }
    CHECK(lockFile(file, 0ms).has_value());
}

constexpr auto checkKey = "Software\\Quovane adapters check";

/// Stored by another program.
void putValue(DWORD type, const std::string &bytes)
{
    HKEY key = nullptr;
    RegCreateKeyA(HKEY_CURRENT_USER, checkKey, &key);
    RegSetValueExA(key, "Path", 0, type, reinterpret_cast<const BYTE *>(bytes.data()),
                   DWORD(bytes.size()));
    RegCloseKey(key);
}

auto storedText()
{
    return registryText(HKEY_CURRENT_USER, checkKey, "Path");
}

/// Of the value as it lies there, in bytes.
DWORD storedSize()
{
    HKEY key = nullptr;
    DWORD size = 0;
    RegOpenKeyExA(HKEY_CURRENT_USER, checkKey, 0, KEY_READ, &key);
    RegQueryValueExW(key, L"Path", nullptr, nullptr, nullptr, &size);
    RegCloseKey(key);
    return size;
}

void theRegistryKeepsExactlyTheText()
{
    const auto store = [](const std::string &text, Ending ending) {
        return setRegistryText(HKEY_CURRENT_USER, checkKey, "Path", text, ending);
    };
    CHECK(!storedText());
    CHECK(store("C:\\Data", Ending::None));
    CHECK(storedText() == "C:\\Data");
    CHECK(storedSize() == 7 * sizeof(wchar_t));
    CHECK(store("C:\\Data", Ending::Zero));
    CHECK(storedText() == "C:\\Data");
    CHECK(storedSize() == 8 * sizeof(wchar_t));
    for (const std::string &text :
         {std::string("a\0b", 3), std::string(), std::string(70000, 'x')}) {
        CHECK(store(text, Ending::None) && storedText() == text);
        CHECK(store(text, Ending::Zero) && storedText() == text);
    }
    CHECK(!registryText(HKEY_CURRENT_USER, checkKey, "Other"));
    RegDeleteKeyA(HKEY_CURRENT_USER, checkKey);
}

/// Rights that nobody has.
struct Nobody
{
    ACL rights{};
    SECURITY_DESCRIPTOR descriptor{};

    Nobody()
    {
        InitializeAcl(&rights, sizeof(rights), ACL_REVISION);
        InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION);
        SetSecurityDescriptorDacl(&descriptor, TRUE, &rights, FALSE);
    }
};

void aKeyWithoutRightsIsNotAMissingOne()
{
    HKEY key = nullptr;
    RegCreateKeyA(HKEY_CURRENT_USER, checkKey, &key);
    Nobody nobody;
    RegSetKeySecurity(key, DACL_SECURITY_INFORMATION, &nobody.descriptor);
    CHECK(raised([] { (void)storedText(); }) == ERROR_ACCESS_DENIED);
    CHECK(!setRegistryText(HKEY_CURRENT_USER, checkKey, "Path", "x", Ending::Zero));
    SetSecurityDescriptorDacl(&nobody.descriptor, TRUE, nullptr, FALSE); // everybody's
    RegSetKeySecurity(key, DACL_SECURITY_INFORMATION, &nobody.descriptor);
    RegCloseKey(key);
    RegDeleteKeyA(HKEY_CURRENT_USER, checkKey);
    CHECK(!storedText());
}

void theRegistryTellsWhatOthersStored()
{
    SetEnvironmentVariableA("QV_CHECK", "C:\\Client");
    putValue(REG_DWORD, std::string("\1\0\0\0", 4));
    CHECK(storedText() == "1");
    putValue(REG_EXPAND_SZ, "%QV_CHECK%\\Bin");
    CHECK(storedText() == "C:\\Client\\Bin");
    putValue(REG_SZ, std::string("%QV_CHECK%\0\0", 12));
    CHECK(storedText() == "%QV_CHECK%");
    RegDeleteKeyA(HKEY_CURRENT_USER, checkKey);
}

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
    Second other(L"hold check");
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

void errorsHaveWords()
{
    CHECK(!describe(ERROR_ACCESS_DENIED).empty());
    CHECK(describe(0x2FFFFFFF) == L"Error 805306367");
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

int hold(const wchar_t *name)
{
    const Instance instance(name);
    say(instance.isSecond() ? "second" : "first");
    Sleep(1000);
    return 0;
}

template <typename Check>
void inFolder(Check check)
{
    const Folder folder;
    const DWORD code = raised([&] { check(folder); });
    if (code != ERROR_SUCCESS) {
        ++failures;
        std::printf("raised error %lu\n", code);
    }
}

template <typename... Checks>
void inFolders(Checks... checks)
{
    (inFolder(checks), ...);
}

} // namespace

int main(int argc, char *argv[])
{
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    const std::string mode = argc > 1 ? argv[1] : "";
    if (mode == "announce")
        return announce();
    if (mode == "hold")
        return hold(L"check");
    if (mode == "lock")
        return holdLock();
    inFolders(aReplacedFileIsWhole, nobodyElsesTemporaryFileIsTaken, aReplacedFileKeepsItsRights,
              aFileThatSomebodyReadsIsWaitedFor, aFolderWaitsForWhatWasDeletedInIt,
              namesKeepTheirCapitalsAndAnyLength, linksAreNeverFollowed, aLockKeepsOthersOut);
    aLockEndsWithItsProgram();
    theRegistryKeepsExactlyTheText();
    theRegistryTellsWhatOthersStored();
    aKeyWithoutRightsIsNotAMissingOne();
    windowsAreFoundRaisedAndClosed();
    foldersAreNoWindowsOfOurs();
    theSecondInstanceKnowsThatItIsOne();
    errorsHaveWords();
    std::printf("%d failed\n", failures);
    return failures;
}
