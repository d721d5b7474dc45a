#pragma once

#include "WindowNavigator.h"
#include "dialogs/ProjectCreation.h"
#include "support/FormDriver.h"
#include "support/SampleProject.h"
#include "workspace/frmMainUI.h"

/// The scripted world with the real windows in it. Layouts are remembered in its own folder.
class WorkspaceWorld : public TestProgram
{
public:
    Program live{session, files,  registry, processes, windows, clock,     messages,
                 dialogs, locale, ending,   real,      real,    components};
    WindowNavigator real{live};

    /// With this project made, if one is named.
    explicit WorkspaceWorld(const QString &project = {})
    {
        QSettings::setDefaultFormat(QSettings::IniFormat);
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, folder.path());
        if (!project.isEmpty())
            makeProject(project);
    }

    /// Makes an empty project and leaves it as the current one.
    void makeProject(const QString &name)
    {
        ProjectCreation creation(program);
        creation.name(name, QStringLiteral("PLT"), QStringLiteral("ENU"));
        if (!creation.addNew(name))
            qFatal("The project could not be made");
    }
    /// Lists a book with one page "start" in the current project.
    void addBook(const QString &name, const QString &acronym)
    {
        currentFiles().addBook(name, acronym,
                               {{QStringLiteral("start.htm"), "<html><p>Old text</p></html>"}});
    }
    ProjectFiles currentFiles() { return {*this, session.projectName}; }
    QString projectPath() { return projectFolder(session.serverPath, session.projectName); }
    /// Makes the project current and opens the main window, as the wizard does at its end.
    frmMainUI *openMainWindow()
    {
        real.handOver(session.projectName, session.projectLanguage);
        real.show(Form::MainUI);
        return mainWindow();
    }
    frmMainUI *mainWindow() { return static_cast<frmMainUI *>(real.window(Form::MainUI)); }
};

/// Chooses the node that a path of names leads to; the project's name is left out.
inline void chooseInTree(QWidget *form, const QStringList &path)
{
    auto *const tree = control<QTreeView>(form, "tvwProject");
    QAbstractItemModel *const nodes = tree->model();
    QModelIndex at = nodes->index(0, 0);
    for (const QString &name : path) {
        if (nodes->canFetchMore(at))
            nodes->fetchMore(at);
        int row = 0;
        while (row < nodes->rowCount(at) && nodes->index(row, 0, at).data() != name)
            ++row;
        if (row == nodes->rowCount(at))
            qFatal("The tree has no node %s", qPrintable(name));
        at = nodes->index(row, 0, at);
    }
    tree->setCurrentIndex(at);
}
