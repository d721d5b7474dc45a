#pragma once

#include "platform/Clock.h"
#include "platform/FileSystem.h"
#include "platform/Progress.h"
#include "platform/SystemLocale.h"
#include "platform/TreeWalker.h"
#include "startup/Session.h"

#include <QString>
#include <QStringList>

#include <functional>

#include <pugixml.hpp>

/// The folder of the new project could not be written; the program ends after telling so.
struct CopyFailure
{
    QString targetFolder;
    QString reason;
};

/// What the author should look at after a copy.
struct CopyRemarks
{
    QStringList links;      ///< left out; relative paths
    QStringList unreadable; ///< book files left as they are; messages naming file and reason

    [[nodiscard]] QStringList all() const { return links + unreadable; }
};

/// True for locks and unfinished files of ours, which belong where they lie.
bool isWorkFile(const TreeEntry &entry);

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
    /// folder, 53 or 75 when its table of contents cannot be read. Besides our own work files,
    /// what `leaveOut` says true to stays behind. Nothing is flushed to the disk: call `syncTree`
    /// on the new folder before anything refers to it.
    CopyRemarks CopyProjectFolder(const QString &sourceName, const Progress &progress = {},
                                  const std::function<bool(const TreeEntry &)> &leaveOut = {});

    /// Sets Book_Key of every book to the current project, and in each book's own file, where
    /// there is one, Book_Key and Book_Path. Returns a message for each book file that cannot be
    /// read; it is left as it is.
    QStringList UpdateQVTocInfo(pugi::xml_document &toc);
    /// Both for one book of the current project, and Book_Acro when `acronym` is not empty. Returns
    /// why a file that is there cannot be read; it is left as it is.
    QStringList UpdateProductInfoInBook(const QString &bookFolder, const QString &bookFile,
                                        const QString &acronym = {});

private:
    QStringList copyFolder(const QString &source, const Progress &progress,
                           const std::function<bool(const TreeEntry &)> &leaveOut);
    QStringList makeItsOwn();
    [[nodiscard]] QString folder() const;

    Session &m_session;
    FileSystem &m_files;
    Clock &m_clock;
    SystemLocale &m_locale;
    QString m_folder; ///< empty: the current project's
};
