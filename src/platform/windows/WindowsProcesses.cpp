#include "platform/windows/WindowsProcesses.h"

#include "platform/FileSystem.h"
#include "platform/Paths.h"
#include "platform/shared/ChildRun.h"
#include "platform/windows/WindowsErrors.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <shellapi.h>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr auto ending = ".exe"_L1;

QString withEnding(const QString &program)
{
    return program.endsWith(ending, Qt::CaseInsensitive) ? program : program + ending;
}

/// What a browser shows itself; other files the shell would run, or hand to a program that does.
bool isShownByBrowsers(const QString &path)
{
    static constexpr std::array endings{
        "htm"_L1,  "html"_L1, "xhtml"_L1, "xht"_L1, "shtml"_L1, "xml"_L1, "txt"_L1,  "md"_L1,
        "csv"_L1,  "css"_L1,  "json"_L1,  "pdf"_L1, "svg"_L1,   "png"_L1, "jpg"_L1,  "jpeg"_L1,
        "webp"_L1, "gif"_L1,  "bmp"_L1,   "ico"_L1, "mp3"_L1,   "mp4"_L1, "webm"_L1, "ogg"_L1};
    const QString suffix = QFileInfo(path).suffix().toLower();
    return std::find(endings.begin(), endings.end(), suffix) != endings.end();
}

/// By its full path, so that no program of that name in the current folder is taken for it.
QString notepad()
{
    wchar_t folder[MAX_PATH];
    const UINT size = GetSystemWindowsDirectoryW(folder, MAX_PATH); // not a terminal user's own
    return QString::fromWCharArray(folder, int(size)) + u"\\notepad.exe"_s;
}

} // namespace

WindowsProcesses::WindowsProcesses(FileSystem &files)
    : m_files(files)
{
}

void WindowsProcesses::start(const QString &program, const QStringList &arguments)
{
    startDetached(nativeProgram(program), arguments);
}

ProcessEnd WindowsProcesses::run(const QString &program, const QStringList &arguments,
                                 const ProcessLimits &limits, const std::stop_token &stop,
                                 const std::function<void(const QByteArray &line)> &line)
{
    return runChild(nativeProgram(program), arguments, limits, stop, line);
}

void WindowsProcesses::openText(const QString &path)
{
    startDetached(notepad(), {nativeFile(path)});
}

void WindowsProcesses::openPage(const QString &path)
{
    const std::wstring file = nativeFile(path).toStdWString();
    if (!isShownByBrowsers(path))
        raiseFileError(PermissionDenied,
                       "The file is not opened, for it is nothing that a browser shows"_L1, path);
    const auto answer = reinterpret_cast<INT_PTR>(
        ShellExecuteW(nullptr, L"open", file.c_str(), nullptr, nullptr, SW_SHOWNORMAL));
    if (answer <= 32) // the shell's way to say no
        raiseFileError(PermissionDenied, "No program shows this page"_L1, path);
}

QString WindowsProcesses::nativeFile(const QString &path) const
{
    if (!m_files.fileExists(path))
        raiseFileError(FileNotFound, "File not found"_L1, path);
    return m_files.nativePath(path);
}

// The product's own programs come with this one; an installation may hold others of their name.
QString WindowsProcesses::nativeProgram(const QString &program) const
{
    const QString named = withEnding(program);
    if (program.contains(u'\\') && m_files.fileExists(named))
        return m_files.nativePath(named);
    const QFileInfo own(QCoreApplication::applicationDirPath() + u'/' + lastComponent(named));
    if (own.isFile())
        return QDir::toNativeSeparators(own.filePath());
    raiseFileError(FileNotFound, "File not found"_L1, program);
}
