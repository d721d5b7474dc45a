#pragma once

#include "platform/Clock.h"
#include "platform/FileSystem.h"
#include "platform/Progress.h"
#include "platform/SystemLocale.h"
#include "startup/Session.h"

#include <QList>
#include <QStringList>

#include <functional>

#include <pugixml.hpp>

/// One book as the table of contents lists it.
struct TocBook
{
    QString name;
    QString acronym;
    QString key;    ///< name of the project that holds it
    QString folder; ///< relative to the project folder
    QString file;   ///< relative to the book folder
    QString type;   ///< attribute of the file, may be empty
    QStringList categories;
    friend bool operator==(const TocBook &, const TocBook &) = default;
};

/// What tells a book from its neighbours: acronym, name and folder. A list that other tools wrote
/// may hold one name under one acronym twice.
QString identityOf(const TocBook &book);

struct TocHeader
{
    QString platform, variation, id, dateProcess, dateMigration;
    QStringList categories;
};

struct Toc
{
    TocHeader header;
    QList<TocBook> books;
};

/// A project's "QV_Toc.xml". Reading checks the header (all five elements) and the book list.
class TableOfContents
{
public:
    TableOfContents(Session &session, FileSystem &files);

    /// Writes the empty skeleton, replacing any file there. True when written; a failure is raised.
    bool CreateQVTOCFile(const QString &path);

    /// Header and books of a project, in document order. Raises 53 or 75 naming the file.
    Toc read(const QString &project);

    /// The four changes below write the file at once (one load, one save; unknown elements are
    /// kept; the previous version goes to _Backup\). A book is meant by its identity. All
    /// raise 5 when it is not there, when a new name or acronym is taken without regard to case, or
    /// when `to` is no place in the list; nothing is written then.
    void addBook(const QString &project, const TocBook &book);
    void changeBook(const QString &project, const TocBook &old, const TocBook &book);
    void removeBook(const QString &project, const TocBook &book);
    void moveBook(const QString &project, const TocBook &book, int to);

    QString path(const QString &project) const;

private:
    void change(const QString &project, const std::function<void(pugi::xml_node books)> &edit);

    Session &m_session;
    FileSystem &m_files;
};

/// Platform and variation of a project name: the numeric last word is the variation, the platform
/// is what stands before its first occurrence; else all is platform.
struct PlatformAndVariation
{
    QString platform, variation;
};
PlatformAndVariation splitProjectName(const QString &name, SystemLocale &locale);

/// Fills the header of the current project from `typedName` and today's date. False when the file
/// is missing. Raises 75 naming the file when it cannot be read or lacks a header element.
bool fillHeader(Session &session, FileSystem &files, Clock &clock, SystemLocale &locale,
                const QString &typedName);
