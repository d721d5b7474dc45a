#include "startup/ExternalPrograms.h"

#include "components/Components.h"
#include "components/ProductInfo.h"
#include "components/WindowHelper.h"
#include "platform/DesktopWindows.h"
#include "platform/Messages.h"
#include "platform/Processes.h"
#include "resources/Texts.h"
#include "startup/Errors.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto viewerCaption = "Quovane"_L1;
constexpr auto viewerProgram = "StartApp.exe"_L1;
constexpr auto indexManagerProgram = "Bin\\QV_IBLIndexMgr.exe"_L1;
constexpr auto indexManagerClass = "WindowsForms10.Window.8.app3"_L1;

QString unlessBlank(const QString &value)
{
    return value.trimmed().isEmpty() ? QString() : value;
}

} // namespace

void OpenHelpTopic(Program &program, const QString &dynCall, const QString &dynCallInfo)
{
    trap(reraise(program.session, u"QV_Developer-QVDeveloper::OpenHelpTopic()"_s), [&] {
        // Both are set, blank or not: what an earlier request left behind must not be shown.
        WindowHelper &helper = program.components.windowHelper;
        helper.setDynCall(unlessBlank(dynCall));
        helper.setDynCallInfo(unlessBlank(dynCallInfo));
        if (helper.checkWindowExists(viewerCaption))
            helper.maximizeWindow(viewerCaption);
        else
            program.processes.start(program.session.clientBinPath + viewerProgram, {dynCallInfo});
    });
}

void CheckIndexManagerApp(Program &program)
{
    trap(reraise(program.session, u" QV_Developer::CheckIndexManagerApp"_s), [&] {
        const QString caption = text(Text::IndexManagerCaption);
        if (!program.windows.exists(indexManagerClass, caption))
            return;
        Message question;
        question.text = text(Text::IndexManagerRunning);
        question.buttons = Buttons::YesNo;
        if (program.messages.show(question) == Answer::Yes)
            program.windows.close(indexManagerClass, caption);
    });
}

void startIndexManager(Program &program)
{
    const QString clientFolder = program.components.installInfo.ClientPath();
    program.processes.start(clientFolder + indexManagerProgram, {});
}

Message indexManagerFailed(const QvError &error)
{
    const QString text = u"Error(%1) in procedure mnuIndexManager_Click of Form frmMainUI"_s;
    return {.text = text.arg(error.number()), .details = error.description()};
}
