#pragma once

#include "ProductComponents.h"
#include "platform/native/NativePlatform.h"
#include "platform/widgets/MessageBoxes.h"
#include "platform/widgets/NativeFileDialogs.h"
#include "startup/CurrentProject.h"
#include "startup/Navigator.h"
#include "startup/Program.h"
#include "startup/Session.h"

/// Name, icon, style and settings file of a program with windows: the settings lie in
/// "quovane/<name>.ini" in the user's settings folder. Once, after the application is made.
void setUpApplication(const QString &name, QLatin1StringView iconName);

/// Everything the windows of one program are handed, over the adapters of this system. Each member
/// uses only those above it. Raises 75 when the folders that the environment names cannot be used.
struct DesktopWorld
{
    DesktopWorld(const SingleInstance &instance, Navigator &navigator,
                 CurrentProject &currentProject);

    Session session;
    NativeFiles files{drivesFolder()};
    NativeRegistry registry;
    NativeProcesses processes{files};
    NativeWindows windows;
    SystemClock clock;
    MessageBoxes messages;
    NativeFileDialogs fileDialogs{files};
    NativeLocale locale;
    ProgramEndNow ending;

    ProductComponents parts{session, registry, windows, files, processes, messages};
    Program program;
};

/// Stands for the windows of the authoring program in the programs beside it, which have none of
/// them: every call raises 5.
class NoAuthoringWindows final : public Navigator, public CurrentProject
{
public:
    void show(Form form) override;
    void loadform() override;
    bool unload(Form form) override;
    void openProject(const QString &name) override;
    void handOver(const QString &name, const QString &language) override;
};
