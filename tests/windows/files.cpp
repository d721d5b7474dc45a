// Replacing, renaming, looking, locking.
#include "Checks.h"

#include <thread>

using namespace win32;
using namespace std::chrono_literals;

namespace {

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
    CHECK(raised([&] { contentOf(deep); }) == ERROR_NOT_SUPPORTED);
    CHECK(raised([&] { contentOf(deep + L"\\none.htm"); }) == ERROR_FILE_NOT_FOUND);
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

void checkFiles()
{
    inFolders(aReplacedFileIsWhole, nobodyElsesTemporaryFileIsTaken, aReplacedFileKeepsItsRights,
              aFileThatSomebodyReadsIsWaitedFor, aFolderWaitsForWhatWasDeletedInIt,
              namesKeepTheirCapitalsAndAnyLength, linksAreNeverFollowed, aLockKeepsOthersOut);
}
