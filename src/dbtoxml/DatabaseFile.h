#pragma once

#include "dbtoxml/DatabaseTable.h"
#include "platform/FileSystem.h"

#include <QList>
#include <QString>

#include <memory>

/// A database file of the Jet 4 or ACE kind, open for reading. Nothing in it is believed: the
/// library's own reader of the catalogue is not used, since it never returns from some damaged
/// property blobs.
class DatabaseFile final
{
public:
    struct Entry
    {
        QString name;
        unsigned long page = 0;   ///< of the table's definition
        bool isElsewhere = false; ///< a link to a table of another database
        bool hasBrokenProperties = false;
    };

    /// Raises EarlyEnd when `path` is no such file or its list of tables cannot be read.
    DatabaseFile(FileSystem &files, const QString &path);

    [[nodiscard]] const QString &path() const { return m_path; }
    /// The author's table of that name without regard to case; null when there is none.
    [[nodiscard]] const Entry *find(QLatin1StringView name) const;
    /// Raises EarlyEnd when somebody has written into the file since it was opened: what was read
    /// may be of two states.
    void requireUnchanged() const;
    /// Entries of the list of tables that cannot be read: there may be more tables.
    [[nodiscard]] qint64 missingEntries() const { return m_missing; }
    /// Raises EarlyEnd when its definition cannot be read. One table at a time: the library reads
    /// all of them through the same page, so the last one must be gone.
    [[nodiscard]] std::unique_ptr<DatabaseTable> open(const Entry &entry) const;

private:
    void readEntries();
    [[nodiscard]] Entry entryOf(const DatabaseTable &objects) const;

    FileSystem &m_files;
    QString m_path;
    FileStatus m_status; ///< when it was opened
    std::unique_ptr<MdbHandle, decltype(&mdb_close)> m_handle{nullptr, &mdb_close};
    QList<Entry> m_entries;
    qint64 m_missing = 0;
};
