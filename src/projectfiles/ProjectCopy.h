#pragma once

#include "platform/Clock.h"
#include "platform/FileSystem.h"
#include "platform/Progress.h"
#include "platform/SystemLocale.h"
#include "startup/Session.h"

#include <QString>
#include <QStringList>

#include <pugixml.hpp>

/// The folder of the new project could not be written; the program ends after telling so.
struct CopyFailure
{
    QString targetFolder;
    QString reason;
};

/// Copies a project and makes the copy the current project's own.
class ProjectCopy
{
public:
    /// The copy is made in the current project's folder, or in `folder` (with backslash) to be
    /// moved there when it is whole.
    ProjectCopy(Session &session, FileSystem &files, Clock &clock, SystemLocale &locale,
                const QString &folder = {});

    /// Copies the folder of `sourceName` for the current project and rewrites the header,
    /// every book and the global book for the new name. Throws CopyFailure when the copy itself
    /// fails, Unwinding when Stop was pressed; raises 76 or 75 when the source is no project
    /// folder, 53 or 75 when its table of contents cannot be read. Returns what the author should
    /// look at: links left out (relative paths) and book files that cannot be read and were left as
    /// they are (messages naming file and reason). Nothing is flushed to the disk: call `syncTree`
    /// on the new folder before anything refers to it.
    QStringList CopyProjectFolder(const QString &sourceName, const Progress &progress = {});

    /// Sets Book_Key of every book to the current project, and in each book's own file, where
    /// there is one, Book_Key and Book_Path. Returns a message for each book file that cannot be
    /// read; it is left as it is.
    QStringList UpdateQVTocInfo(pugi::xml_document &toc);
    /// Both for one book of the current project. Returns why a file that is there cannot be read;
    /// it is left as it is.
    QStringList UpdateProductInfoInBook(const QString &bookFolder, const QString &bookFile);

private:
    QStringList copyFolder(const QString &source, const Progress &progress);
    QStringList makeItsOwn();
    [[nodiscard]] QString folder() const;

    Session &m_session;
    FileSystem &m_files;
    Clock &m_clock;
    SystemLocale &m_locale;
    QString m_folder; ///< empty: the current project's
};
