#pragma once

#include "platform/FileSystem.h"
#include "platform/Progress.h"
#include "projectfiles/BookFile.h"
#include "projectfiles/changes/FileChanges.h"
#include "startup/Session.h"
#include "tools/import/ImportPlan.h"

/// What an import does.
struct ImportResult
{
    FileChanges changes; ///< puts everything into the book, when it is applied
    QStringList pages;   ///< relative to the book folder, as the outline lists them then
    int copied = 0;      ///< files copied or made, pages included
    int replaced = 0;    ///< of these, files whose earlier content was backed up
    QStringList notes;   ///< what the author should know, ready to be shown
};

/// Takes pages with their pictures, styles and scripts into a book: as they are, or made of other
/// files. All of it may run on a worker, and nothing in the book changes here.
class SourceImport final
{
public:
    SourceImport(Session &session, FileSystem &files);

    /// *Add source files*: looks at the files and folders the author picked (product paths) and
    /// says what adding them to the book would do. Reads each page once, writes nothing, never
    /// follows links. What cannot be taken stands in the plan with its reason. Raises 53 or 75
    /// naming the book's file.
    ImportPlan plan(const QString &project, const TocBook &book, const QStringList &picked,
                    const Progress &progress = {});
    /// *Add import files*: the same, also for text, Markdown, tables, and for archives, which are
    /// unpacked into `scratch`: a free path whose parent is there. It is made when it is needed,
    /// and the plan needs it until it was staged.
    ImportPlan planImport(const QString &project, const TocBook &book, const QStringList &picked,
                          const QString &scratch, const Progress &progress = {});
    /// *Re-import newer*: the pages whose sources are not what they were when they were taken.
    /// Replacing is proposed where the page was not edited since. Sources that have gone stand
    /// among the omissions.
    ImportPlan planNewer(const QString &project, const TocBook &book, const QString &scratch,
                         const Progress &progress = {});

    /// Prepares what was decided: copies the files byte for byte into `fresh` (a free path below
    /// the project folder whose parent is there), and gives the change that moves them into the
    /// book, lists the pages in its outline, and writes the book file once. Stop and every failure
    /// leave no trace.
    ImportResult stage(const ImportPlan &plan, const QString &fresh, const Progress &progress = {});

private:
    ImportPlan planned(ImportPlan plan, const QStringList &picked, const QString &scratch,
                       const Progress &progress);

    Session &m_session;
    FileSystem &m_files;
};
