#pragma once

#include "startup/CurrentProject.h"
#include "startup/Navigator.h"
#include "startup/Program.h"

#include <QObject>

#include <map>

class FormWindow;
class frmBuild;
class frmMainUI;

/// Knows every window of the program: makes each on the first touch, keeps one of each kind, and
/// ends the program when no loaded window is left. Windows that were only touched are hidden and
/// keep nothing alive; neither does the splash.
class WindowNavigator final : public QObject, public Navigator, public CurrentProject
{
    Q_OBJECT

public:
    explicit WindowNavigator(Program &program);
    ~WindowNavigator() override;

    void show(Form form) override;
    void loadform() override;
    bool unload(Form form) override;
    void openProject(const QString &name) override;

    /// Raises what a control raises when it cannot read the project.
    void handOver(const QString &projectName, const QString &projectLanguage) override;

    /// The window when it has been made and has not closed, else null.
    [[nodiscard]] FormWindow *window(Form form) const;

    /// Brings the window the author works in to the front, maximized.
    void bringToFront();
    /// Asks what the author works in to close, as its close box would: the question or the long
    /// work in front, else the window.
    void closeFront();

private:
    FormWindow &touch(Form form);
    [[nodiscard]] FormWindow *make(Form form);
    [[nodiscard]] frmMainUI &mainWindow();
    [[nodiscard]] frmBuild &buildWindow();
    [[nodiscard]] FormWindow *frontWindow() const;
    void endAfterLastWindow();

    Program &m_program;
    std::map<Form, FormWindow *> m_windows;
};
