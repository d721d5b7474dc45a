#include "platform/windows/WindowsProcesses.h"

#include "platform/FileSystem.h"
#include "platform/Paths.h"
#include "platform/QvError.h"
#include "platform/portable/ChildRun.h"
#include "platform/windows/win32/Win32Error.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <shellapi.h>

using namespace Qt::StringLiterals;

namespace {

constexpr auto ending = ".exe"_L1;

QString withEnding(const QString &program)
{
    return program.endsWith(ending, Qt::CaseInsensitive) ? program : program + ending;
}

/// By its full path, so that no program of that name in the current folder is taken for it.
QString notepad()
{
    wchar_t folder[MAX_PATH];
    const UINT size = GetWindowsDirectoryW(folder, MAX_PATH);
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
    const auto answer = reinterpret_cast<INT_PTR>(
        ShellExecuteW(nullptr, L"open", file.c_str(), nullptr, nullptr, SW_SHOWNORMAL));
    if (answer <= 32) // the shell's way to say no
        throw QvError(PermissionDenied, {}, u"No program shows this page: "_s + path);
}

QString WindowsProcesses::nativeFile(const QString &path) const
{
    if (!m_files.fileExists(path))
        throw QvError(FileNotFound, {}, u"File not found: "_s + path);
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
    throw QvError(FileNotFound, {}, u"File not found: "_s + program);
}
