#include "platform/portable/PortableProcesses.h"

#include "platform/FileSystem.h"
#include "platform/QvError.h"
#include "platform/portable/ChildRun.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace {

constexpr auto windowsEnding = ".exe"_L1;

void startDetached(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProgram(program);
    process.setArguments(arguments);
    if (!process.startDetached())
        throw QvError(PermissionDenied, {},
                      u"%1 cannot be started: %2"_s.arg(program, process.errorString()));
}

QString besideThisProgram(const QString &name)
{
    const QFileInfo file(QCoreApplication::applicationDirPath() + u'/' + name);
    if (!file.isFile())
        throw QvError(FileNotFound, {}, u"File not found: "_s + file.filePath());
    return file.filePath();
}

} // namespace

PortableProcesses::PortableProcesses(FileSystem &files)
    : m_files(files)
{
}

void PortableProcesses::start(const QString &program, const QStringList &arguments)
{
    startDetached(nativeProgram(program), arguments);
}

ProcessEnd PortableProcesses::run(const QString &program, const QStringList &arguments,
                                  const ProcessLimits &limits, const std::stop_token &stop,
                                  const std::function<void(const QByteArray &line)> &line)
{
    const bool isBare = !program.contains(u'\\');
    return runChild(isBare ? besideThisProgram(program) : nativeProgram(program), arguments, limits,
                    stop, line);
}

void PortableProcesses::openText(const QString &path)
{
    openFile(path);
}

void PortableProcesses::openPage(const QString &path)
{
    openFile(path);
}

/// The desktop knows which program shows a text and which one a page.
void PortableProcesses::openFile(const QString &path)
{
    if (!m_files.fileExists(path))
        throw QvError(FileNotFound, {}, u"File not found: "_s + path);
    const QString opener = QStandardPaths::findExecutable(u"xdg-open"_s);
    if (opener.isEmpty())
        throw QvError(FileNotFound, {},
                      u"%1 cannot be shown: the program xdg-open is not installed"_s.arg(path));
    startDetached(opener, {m_files.nativePath(path)});
}

QString PortableProcesses::nativeProgram(const QString &program) const
{
    const auto isThere = [this](const QString &path) {
        const FileKind kind = m_files.status(path).kind;
        return kind == FileKind::File || kind == FileKind::Link; // programs are often links
    };
    if (isThere(program))
        return m_files.nativePath(program);
    const QString plain = program.chopped(windowsEnding.size());
    if (program.endsWith(windowsEnding, Qt::CaseInsensitive) && isThere(plain))
        return m_files.nativePath(plain);
    throw QvError(FileNotFound, {}, u"File not found: "_s + program);
}
