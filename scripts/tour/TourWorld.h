#pragma once

#include "ProductComponents.h"
#include "WindowNavigator.h"
#include "platform/DesktopWindows.h"
#include "platform/Processes.h"
#include "platform/native/NativePlatform.h"
#include "platform/widgets/MessageBoxes.h"
#include "startup/Program.h"
#include "startup/Session.h"

/// Other windows are not on the tour: what would be started is told. What is waited for runs.
class ToldProcesses final : public Processes
{
public:
    explicit ToldProcesses(FileSystem &files)
        : m_real(files)
    {
    }

    void start(const QString &program, const QStringList &arguments) override;
    void openText(const QString &path) override;
    void openPage(const QString &path) override;
    ProcessEnd run(const QString &program, const QStringList &arguments,
                   const ProcessLimits &limits, const std::stop_token &stop,
                   const std::function<void(const QByteArray &line)> &line) override
    {
        return m_real.run(program, arguments, limits, stop, line);
    }

private:
    NativeProcesses m_real;
};

class NoOtherWindows final : public DesktopWindows
{
public:
    bool exists(const QString &, const QString &) override { return false; }
    void raiseMaximized(const QString &, const QString &, const QString &) override {}
    void close(const QString &, const QString &) override {}
    bool previousInstance() override { return false; }
};

/// The author's picks in file dialogs, which belong to the desktop and are not shown.
class PickedPaths final : public FileDialogs
{
public:
    QString next;
    QString openFile(const QString &, const QString &, const QString &) override { return next; }
    QStringList openFiles(const QString &, const QString &, const QString &) override
    {
        return {next};
    }
    QString saveFile(const QString &, const QString &, const QString &) override { return next; }
    QString chooseFolder(const QString &, const QString &) override { return next; }
};

/// The program's world with drives and settings where the tour wants them.
struct TourWorld
{
    TourWorld(const QString &drives, const SettingsFolders &settings)
        : files(drives)
        , registry(settings)
    {
    }

    Session session;
    NativeFiles files;
    IniRegistry registry;
    ToldProcesses processes{files};
    NoOtherWindows windows;
    SystemClock clock;
    MessageBoxes messages;
    PickedPaths fileDialogs;
    NativeLocale locale;
    ProgramEndNow ending;
    ProductComponents parts{session, registry, windows, files, processes, messages};
    Program program{session,     files,  registry, processes, windows,   clock,    messages,
                    fileDialogs, locale, ending,   navigator, navigator, parts.all};
    WindowNavigator navigator{program};
};
