#pragma once

#include "ProductComponents.h"
#include "controls/build/BuiltProject.h"
#include "platform/DesktopWindows.h"
#include "platform/Progress.h"
#include "platform/portable/DrivesFolder.h"
#include "platform/portable/IniRegistry.h"
#include "platform/portable/PortableFiles.h"
#include "platform/portable/PortableLocale.h"
#include "platform/portable/PortableProcesses.h"
#include "platform/portable/ProgramEndNow.h"
#include "platform/portable/StopSignals.h"
#include "platform/portable/SystemClock.h"
#include "qvdev/ConsoleMessages.h"
#include "qvdev/Output.h"
#include "qvdev/ProgressLine.h"
#include "startup/CurrentProject.h"
#include "startup/Navigator.h"
#include "startup/Program.h"
#include "startup/Session.h"

/// The settings of this machine, where the server that the call names stands before the stored one.
class ConsoleSettings final : public Registry
{
public:
    void setServer(const QString &serverPath) { m_server = serverPath; }

    [[nodiscard]] std::optional<QString> value(Hive hive, const QString &key,
                                               const QString &name) override;
    bool setValue(Hive hive, const QString &key, const QString &name,
                  const QString &value) override;

private:
    IniRegistry m_stored;
    QString m_server;
};

/// What a program without windows has of them: none to find, to show or to ask for files.
class NoWindows final : public DesktopWindows,
                        public FileDialogs,
                        public Navigator,
                        public CurrentProject
{
public:
    [[nodiscard]] bool exists(const QString &, const QString &) override { return false; }
    void raiseMaximized(const QString &, const QString &, const QString &) override {}
    void close(const QString &, const QString &) override {}
    [[nodiscard]] bool previousInstance() override { return false; }

    QString openFile(const QString &, const QString &, const QString &) override { return {}; }
    QStringList openFiles(const QString &, const QString &, const QString &) override { return {}; }
    QString saveFile(const QString &, const QString &, const QString &) override { return {}; }
    QString chooseFolder(const QString &, const QString &) override { return {}; }

    void show(Form) override {}
    void loadform() override {}
    bool unload(Form) override { return true; }
    void openProject(const QString &) override {}

    void handOver(const QString &, const QString &) override {}
};

/// The world of the command line: the machine's own files, settings and clock, messages as lines.
struct ConsoleWorld final
{
    explicit ConsoleWorld(bool asJson);

    /// Takes the server that the call names (a native path), else the one of the settings. Raises 5
    /// when there is none, 76 when it holds no Docs.
    void findServer(const QString &native);

    /// The product's form of a native path, which may be relative to the current folder.
    [[nodiscard]] QString productPath(const QString &native);
    /// The catalogue's entry of that name. Raises 5 when there is none.
    [[nodiscard]] CatalogueEntry project(const QString &name);
    /// Raises 5 when a tool must run or failed: the project may not be released then.
    void requireBuilt(const BuiltProject &built);
    [[nodiscard]] ProjectCatalogue catalogue() { return {session, files}; }
    /// Long work shows how far it is, and stops at Ctrl+C.
    [[nodiscard]] Progress progress();
    [[nodiscard]] bool isStopped() const { return stopSignals.token().stop_requested(); }

    StopSignals stopSignals;
    ProgressLine progressLine;
    Output output;
    Session session;
    PortableFiles files{drivesFolder()};
    ConsoleSettings settings;
    PortableProcesses processes{files};
    NoWindows windows;
    SystemClock clock;
    ConsoleMessages messages{progressLine};
    PortableLocale locale;
    ProgramEndNow ending;
    ProductComponents parts{session, settings, windows, files, processes, messages};
    Program program{session, files,  settings, processes, windows, clock,    messages,
                    windows, locale, ending,   windows,   windows, parts.all};
};
