#pragma once

// What the checks of the system calls share: files of their own, and how a failure is told.

#include "platform/windows/win32/FileChanges.h"
#include "platform/windows/win32/FileLock.h"
#include "platform/windows/win32/Files.h"
#include "platform/windows/win32/Replacement.h"

#include <sddl.h>

#include <cstdio>
#include <string>

inline int failures = 0;

void checkFiles();
void checkRegistry();
void checkPrograms();
/// What this program does when another of it checks something; the exit status.
int serve(const std::string &mode);

#define CHECK(...) check((__VA_ARGS__), #__VA_ARGS__, __FILE__, __LINE__)

inline void check(bool good, const char *what, const char *file, int line)
{
    if (good)
        return;
    ++failures;
    std::printf("%s:%d: %s\n", file, line, what);
}

/// What the call raises, or ERROR_SUCCESS.
template <typename Call>
DWORD raised(Call call)
{
    try {
        call();
    } catch (const win32::Error &error) {
        return error.code;
    }
    return ERROR_SUCCESS;
}

inline void put(const std::wstring &path, const std::string &content,
                win32::ReplaceOptions options = {})
{
    win32::Replacement file(path, options);
    file.write(0, content.data(), std::int64_t(content.size()));
    file.putInPlace();
}

inline std::string contentOf(const std::wstring &path)
{
    std::int64_t size = 0;
    const win32::Handle file = win32::openToRead(path, size);
    std::string content(size_t(size), '\0');
    content.resize(size_t(win32::readAt(file.get(), 0, content.data(), size)));
    return content;
}

inline std::wstring namesIn(const std::wstring &folder)
{
    std::wstring names;
    for (const win32::Entry &entry : win32::entries(folder))
        names += entry.name + L'|';
    return names;
}

inline void removeTree(const std::wstring &folder)
{
    for (const win32::Entry &entry : win32::entries(folder)) {
        const std::wstring path = folder + L'\\' + entry.name;
        if (entry.status.kind == win32::Kind::Folder)
            removeTree(path);
        else
            win32::removeFile(path);
    }
    win32::removeFolder(folder);
}

inline std::wstring temporaryFolder()
{
    wchar_t folder[MAX_PATH];
    GetTempPathW(MAX_PATH, folder);
    return folder;
}

inline win32::Handle openWithoutSharing(const std::wstring &path)
{
    return win32::Handle(
        CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
}

/// A folder of its own that goes at the end.
struct Folder
{
    std::wstring path;

    Folder()
    {
        path = temporaryFolder() + L"qv adapters " + std::to_wstring(GetTickCount64());
        win32::makeFolder(path);
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
