#pragma once

#include "controls/session/ProjectSession.h"
#include "platform/Progress.h"
#include "tools/import/ImportPlan.h"

#include <functional>

class ImportList;
class QWidget;
class SourceImport;

/// The commands *Add import files* and *Re-import newer files*: make pages of text, Markdown,
/// tables, folders and archives, and renew what has changed since it was added.
class AddImportFiles final : public QObject
{
    Q_OBJECT

public:
    AddImportFiles(ProjectSession &session, QWidget *window);
    ~AddImportFiles() override;

    /// Begins with files or folders (product paths) for the current book. The list stays open for
    /// the author; `added` follows when something was.
    void begin(const QStringList &picked);
    /// Lists the pages of the current book whose sources are newer, or says that there are none.
    void beginNewer();
    /// The files that can be picked, for a file dialog.
    static QString fileFilter();

Q_SIGNALS:
    void added();

private:
    using Look =
        std::function<ImportPlan(SourceImport &, const QString &scratch, const Progress &)>;
    bool look(const QString &title, ImportPlan &plan, const Look &work);
    void tidy();

    ProjectSession &m_session;
    ImportList *m_list;
    QString m_scratch; ///< where archives are unpacked; "" when there is nothing
};
