#include "workspace/ToolLogs.h"

#include "platform/FileSystem.h"
#include "platform/Messages.h"
#include "platform/Paths.h"
#include "platform/Processes.h"
#include "resources/Texts.h"
#include "startup/Program.h"
#include "startup/Session.h"

using namespace Qt::StringLiterals;

namespace {

QString currentFolder(const Program &program)
{
    return projectFolder(program.session.serverPath, program.session.projectName);
}

void showLog(Program &program, const QString &tested, const QString &opened, const QString &missing)
{
    if (program.files.fileExists(tested))
        program.processes.openText(opened);
    else
        program.messages.show({missing});
}

} // namespace

void showDocToDocLog(Program &program)
{
    const QString folder = currentFolder(program);
    showLog(program, folder + u"DocToDoc_Log.txt"_s, folder + u"DoctoDoc_Log.txt"_s,
            text(Text::NoDocToDocLog));
}

void showQaLog(Program &program)
{
    const QString name = program.session.projectName + u"_QA_Log.txt"_s;
    const QString inside = currentFolder(program) + name;
    const QString beside = docsFolder(program.session.serverPath) + name;
    const QString log = program.files.fileExists(inside) ? inside : beside;
    showLog(program, log, log, name + u' ' + text(Text::NoQaLog));
}

void showQuickNavLog(Program &program)
{
    const QString log = currentFolder(program) + u"QuickNav\\QuickNav_Log.txt"_s;
    showLog(program, log, log, text(Text::NoQuickNavLog));
}

void showSearchWordsLog(Program &program)
{
    const QString folder = currentFolder(program);
    QString log = folder + u"SearchWords_Log.txt"_s;
    if (!program.files.fileExists(log))
        log = folder + ProjectFile::searchWordsFolder + u"\\SearchWords_Log.txt"_s;
    const FileStatus status = program.files.status(log);
    if (status.kind == FileKind::File && status.size > 0)
        program.processes.openText(log);
    else
        program.messages.show({text(Text::NoSearchWordsLog)});
}
