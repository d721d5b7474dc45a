#pragma once

#include "controls/session/ProjectSession.h"

#include <QObject>

class AddImportFiles;
class AddSourceFiles;
class QWidget;

/// The commands *Add source files* and *Add import files*: asks for files or a folder, and takes
/// those that were dropped.
class AddFiles final : public QObject
{
    Q_OBJECT

public:
    AddFiles(ProjectSession &session, QWidget *window);

    void askSourceFolder();
    void askSourceFiles();
    void askImportFolder();
    void askImportFiles();
    void beginNewer(); ///< of what was added to the current book
    /// Files and folders (product paths): pages and folders of them as they are, what has to become
    /// a page first through the import.
    void begin(const QStringList &paths);

Q_SIGNALS:
    void sourcesAdded();
    void importsAdded();

private:
    ProjectSession &m_session;
    AddSourceFiles *m_sources;
    AddImportFiles *m_imports;
};
