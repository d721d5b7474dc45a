#include "dialogs/FirstRun.h"

#include "components/Components.h"
#include "components/RegistryAccess.h"
#include "dialogs/SampleInstallation.h"
#include "platform/FileSystem.h"
#include "platform/Messages.h"
#include "platform/Paths.h"
#include "platform/QvError.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

FirstRun::FirstRun(Program &program)
    : m_program(program)
{
}

bool FirstRun::isNeeded()
{
    try {
        return m_program.components.registryAccess.GetQVServer().isEmpty();
    } catch (const QvError &error) {
        if (error.number() == InvalidCall) // none is set; an unreadable registry is another matter
            return true;
        throw;
    }
}

bool FirstRun::findServer()
{
    const Choice question{
        u"QV Developer does not know yet where your Quovane server is.\n\n"
        "Choose the folder of the server, the one that holds the folder Docs, or create a sample "
        "installation to try the program with."_s,
        {u"&Choose the Server Folder..."_s, u"Create a &Sample Installation..."_s, u"&Quit"_s}};

    for (;;) {
        const int answer = m_program.messages.choose(question);
        if (answer == 2)
            return false;
        const auto showReason = [&](const QvError &error) {
            m_program.messages.show({error.description()});
        };
        if (trap(showReason, [&] { return answer == 0 ? chooseServer() : createSample(); }))
            return true;
    }
}

bool FirstRun::chooseServer()
{
    const QString folder =
        m_program.fileDialogs.chooseFolder(u"Choose the Quovane server folder"_s, {});
    if (folder.isEmpty() || refuses(folder))
        return false;
    const QString serverPath = withBackslash(folder);
    if (!m_program.files.folderExists(withoutBackslash(docsFolder(serverPath)))) {
        m_program.messages.show(
            {u"There is no folder Docs in %1, so it is not the folder of a "
             "Quovane server. Choose the folder that holds Docs."_s.arg(folder)});
        return false;
    }
    use(serverPath);
    return true;
}

bool FirstRun::createSample()
{
    const QString folder =
        m_program.fileDialogs.chooseFolder(u"Choose where to put the sample installation"_s, {});
    if (folder.isEmpty() || refuses(folder))
        return false;
    createSampleInstallation(m_program, withBackslash(folder) + u"Quovane Sample"_s,
                             QCoreApplication::applicationDirPath());
    return true;
}

bool FirstRun::refuses(const QString &folder)
{
    if (!folder.startsWith("\\\\"_L1) && !folder.startsWith("//"_L1))
        return false;
    m_program.messages.show(
        {u"%1 is a network name, which QV Developer cannot work with. Connect the network folder "
         "to a drive letter first, then choose it on that drive."_s.arg(folder)});
    return true;
}

// A server without a client beside it gets its client folder inside.
void FirstRun::use(const QString &serverPath)
{
    RegistryAccess &registry = m_program.components.registryAccess;
    const auto setClient = [&](const QvError &) {
        registry.SetValueName(Hive::LocalMachine, RegistryKey::product, u"Client"_s,
                              serverPath + u"Client\\"_s);
    };
    trap(setClient, [&] {
        Q_UNUSED(registry.vGetValueName(Hive::LocalMachine, RegistryKey::product, u"Client"_s))
    });
    registry.SetQVServer(serverPath);
}
