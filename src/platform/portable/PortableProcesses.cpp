#include "platform/portable/PortableProcesses.h"

#include "platform/FileSystem.h"
#include "platform/Paths.h"
#include "platform/QvError.h"
#include "platform/shared/ChildRun.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace {

constexpr auto windowsEnding = ".exe"_L1;

/// The native path of a program that lies beside this one; "" when there is none.
QString besideThisProgram(const QString &name)
{
    const QFileInfo file(QCoreApplication::applicationDirPath() + u'/' + name);
    return file.isFile() ? file.filePath() : QString();
}

QString withoutEnding(const QString &program)
{
    return program.endsWith(windowsEnding, Qt::CaseInsensitive)
               ? program.chopped(windowsEnding.size())
               : program;
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
    return runChild(nativeProgram(program), arguments, limits, stop, line);
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

// The product's own programs come with this one; an installation may hold others of their name.
QString PortableProcesses::nativeProgram(const QString &program) const
{
    const auto isThere = [this](const QString &path) {
        const FileKind kind = m_files.status(path).kind;
        return kind == FileKind::File || kind == FileKind::Link; // programs are often links
    };
    const QString plain = withoutEnding(program);
    if (program.contains(u'\\')) {
        for (const QString &path : {program, plain}) {
            if (isThere(path))
                return m_files.nativePath(path);
        }
    }
    if (const QString own = besideThisProgram(lastComponent(plain)); !own.isEmpty())
        return own;
    throw QvError(FileNotFound, {}, u"File not found: "_s + program);
}
