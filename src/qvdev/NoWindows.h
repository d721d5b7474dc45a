#pragma once

#include "platform/DesktopWindows.h"
#include "platform/Messages.h"
#include "startup/CurrentProject.h"
#include "startup/Navigator.h"

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
