#include "startup/FileHelpers.h"

#include "platform/Messages.h"
#include "platform/Paths.h"
#include "platform/ProgramEnd.h"
#include "resources/Texts.h"
#include "startup/Errors.h"
#include "startup/PageText.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace {

void refuseServer(Program &program, const QString &serverPath, const QvError &error)
{
    Message message;
    message.text =
        text(Text::YourQvServer) + u' ' + serverPath + u' ' + text(Text::InsufficientPrivileges);
    message.details = error.description()
                      + u"\nMake sure that the server is connected and that you may write to its "
                        "folder Docs, then start QV Developer again."_s;
    program.messages.show(message);
    program.ending.endNow();
}

// Another author who starts at this moment uses the same name and may be the one who removes it.
void removeProbe(FileSystem &files, const QString &probe)
{
    const auto unlessGone = [](const QvError &error) {
        if (error.number() != FileNotFound)
            throw error;
    };
    trap(unlessGone, [&] { files.removeFile(probe); });
}

} // namespace

FileHelpers::FileHelpers(Session &session, FileSystem &files)
    : m_session(session)
    , m_files(files)
{
}

bool FileHelpers::mbCreateFilePath(const QString &path)
{
    return trap(reraise(m_session, u"QV_Developer::mbCreateFilePath"_s), [&] {
        const QStringList pieces = path.split(u'\\');
        QString folder = pieces.first();
        for (const QString &piece : pieces.sliced(1)) {
            folder += u'\\' + piece;
            const FileKind kind = m_files.status(folder).kind;
            // A server may be reached through a link; the folder that is asked for is never one.
            const bool isOnTheWay = kind == FileKind::Link && folder != path;
            if (kind != FileKind::Folder && !isOnTheWay)
                m_files.makeFolder(folder);
        }
        return true;
    });
}

void FileHelpers::EnterToFile(const QString &fileName, const QString &text)
{
    trap(reraise(m_session, u"QV_Developer-QVDeveloper::EnterToFile()"_s),
         [&] { m_files.replaceFile(fileName, utf16Bytes(text)); });
}

QString FileHelpers::ReadFileText(const QString &fileName)
{
    const auto readAsEmpty = [](const QvError &) {};
    return trap(readAsEmpty, [&] {
        return decodePage(m_files.readFile(fileName), m_session.projectLanguage).text;
    });
}

bool checkforwritability(Program &program, const QString &serverPath)
{
    const QString tag = u"QV_Developer-QVDeveloper::checkforwritability()"_s;
    return trap(reraise(program.session, tag), [&] {
        const QString probe = docsFolder(serverPath) + u"TempFile.txt"_s;
        trap([&](const QvError &error) { refuseServer(program, serverPath, error); },
             [&] { program.files.replaceFile(probe, utf16Bytes({})); });
        removeProbe(program.files, probe);
        return true;
    });
}

void GenerateXMLTag(Session &session, XmlWriter &writer, XmlAttributes &attributes,
                    const QString &tagName, const QString &value)
{
    trap(reraise(session, u"QV_Developer::GenerateXMLTag"_s), [&] {
        writer.startElement(tagName, attributes);
        if (!value.isEmpty())
            writer.characters(value);
        writer.endElement();
        attributes.clear();
    });
}
