#pragma once

#include "platform/FileSystem.h"
#include "platform/Progress.h"
#include "projectfiles/BookFile.h"
#include "startup/Session.h"
#include "tools/ImportPlan.h"

/// What an import did.
struct ImportResult
{
    QStringList pages; ///< relative to the book folder, as the outline lists them now
    int copied = 0;    ///< files copied, pages included
    int replaced = 0;  ///< of these, files whose earlier content was backed up
    QStringList notes; ///< what the author should know, ready to be shown
};

/// *Add source files*: takes HTML pages with their pictures, styles and scripts into a book.
/// Both halves may run on a worker.
class SourceImport final
{
public:
    SourceImport(Session &session, FileSystem &files);

    /// Looks at the files and folders the author picked (product paths) and says what adding them
    /// to the book would do. Reads each page once, writes nothing, never follows links. What
    /// cannot be taken stands in the plan with its reason. Raises 53 or 75 naming the book's file.
    ImportPlan plan(const QString &project, const TocBook &book, const QStringList &picked,
                    const Progress &progress = {});

    /// Does what was decided: copies the files byte for byte into a fresh folder below _Backup\,
    /// moves them into the book, lists the pages in its outline, and writes the book file once.
    /// Stop and every failure take all of it back and leave the book as it was.
    ImportResult run(const ImportPlan &plan, const Progress &progress = {});

private:
    Session &m_session;
    FileSystem &m_files;
};
