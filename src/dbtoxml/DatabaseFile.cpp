#include "dbtoxml/DatabaseFile.h"

#include "dbtoxml/EarlyEnd.h"
#include "dbtoxml/PropertyBlob.h"
#include "dbtoxml/RawValues.h"
#include "platform/FileStreams.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 pageSize = 4096;
constexpr qsizetype versionPlace = 0x14;
constexpr char oldVersion = 0, newestVersion = 6;
constexpr unsigned long catalogPage = 2;

[[noreturn]] void refuse(const QString &path, const QString &what,
                         const QString &advice = u"Choose the database of a legacy book set."_s)
{
    throw EarlyEnd{ConversionEnd::Refused, u"%1 %2. %3"_s.arg(path, what, advice)};
}

[[noreturn]] void raiseWithoutTables(const QString &path)
{
    throw EarlyEnd{ConversionEnd::Damaged,
                   u"%1 cannot be read: its list of tables is damaged, or all of it is encrypted. "
                   "Take its encryption off with the program it was made with, repair it there, "
                   "or take an older copy of it."_s.arg(path)};
}

void checkVersion(const QString &path, char version)
{
    const QString advice = u"Convert it to the format of 2000 or 2002-2003 with a program that "
                           "can, then choose the converted one."_s;
    if (version == oldVersion)
        refuse(path, u"is a database of the format of 1997 and before, which cannot be read here"_s,
               advice);
    if (version < oldVersion || version > newestVersion)
        refuse(path,
               u"is a database of an unknown, perhaps newer format (%1)"_s.arg(uchar(version)),
               advice);
}

/// What it is. Raises EarlyEnd unless the file begins as a database and consists of whole pages.
FileStatus checkFile(FileSystem &files, const QString &path)
{
    const FileStatus status = files.status(path);
    if (status.kind == FileKind::Missing)
        refuse(path, u"is not there"_s);
    if (status.kind != FileKind::File)
        refuse(path, u"is a folder, a link or a device, and no file of its own"_s);
    const auto file = files.openFile(path);
    if (status.size == 0)
        refuse(path, u"is empty"_s);
    QByteArray head(versionPlace + 1, '\0');
    file->read(0, head.data(), head.size());
    const QByteArray mark = head.first(versionPlace);
    if (mark != QByteArray("\0\1\0\0Standard Jet DB\0", versionPlace)
        && mark != QByteArray("\0\1\0\0Standard ACE DB\0", versionPlace))
        refuse(path, u"is no database"_s);
    checkVersion(path, head.back());
    if (status.size % pageSize != 0)
        throw damagedFile(path, u"it ends in the middle of a page, so a piece of it is missing"_s);
    return status;
}

/// What would make the library look for the file elsewhere (and hang), or print its data otherwise.
void forgetSettings()
{
    for (const char *name : {"MDBPATH", "MDBOPTS", "MDBICONV", "MDB_JET3_CHARSET"})
        qunsetenv(name);
}

bool isAuthors(qint64 type, qint64 flags)
{
    constexpr qint64 ofTheSystem = 0x80000002;
    return (type == MDB_TABLE || type == MDB_LINKED_TABLE) && (flags & ofTheSystem) == 0;
}

} // namespace

DatabaseFile::DatabaseFile(FileSystem &files, const QString &path)
    : m_files(files)
    , m_path(path)
    , m_status(checkFile(files, path))
{
    forgetSettings();
    m_handle.reset(mdb_open(files.nativePath(path).toLocal8Bit().constData(), MDB_NOFLAGS));
    if (!m_handle)
        refuse(path, u"cannot be opened as a database"_s);
    readEntries();
}

const DatabaseFile::Entry *DatabaseFile::find(QLatin1StringView name) const
{
    const auto found = std::find_if(m_entries.begin(), m_entries.end(), [&](const Entry &entry) {
        return name.compare(entry.name, Qt::CaseInsensitive) == 0;
    });
    return found == m_entries.end() ? nullptr : &*found;
}

std::unique_ptr<DatabaseTable> DatabaseFile::open(const Entry &entry) const
{
    auto table = std::make_unique<DatabaseTable>(m_handle.get(), m_status.size, entry.page);
    if (!table->isReadable())
        throw damagedFile(m_path, u"its table %1 cannot be read"_s.arg(entry.name));
    return table;
}

void DatabaseFile::requireUnchanged() const
{
    const FileStatus now = m_files.status(m_path);
    if (now.size != m_status.size || now.modified != m_status.modified)
        refuse(m_path,
               u"was changed by another program while it was read, so nothing was created"_s,
               u"Close it there, then migrate it again."_s);
}

// "MSysObjects" is read as the ordinary table that it is.
void DatabaseFile::readEntries()
{
    DatabaseTable objects(m_handle.get(), m_status.size, catalogPage);
    if (!objects.isReadable())
        raiseWithoutTables(m_path);
    const int type = objects.column("Type"_L1), flags = objects.column("Flags"_L1);
    while (objects.next()) {
        if (isAuthors(integerOf(objects.field(type)), integerOf(objects.field(flags))))
            m_entries.append(entryOf(objects));
    }
    if (m_entries.isEmpty())
        raiseWithoutTables(m_path);
    m_missing = qMax<qint64>(0, objects.promised() - objects.fetched());
}

DatabaseFile::Entry DatabaseFile::entryOf(const DatabaseTable &objects) const
{
    constexpr qint64 pageOfId = 0x00ffffff;
    const qint64 id = integerOf(objects.field(objects.column("Id"_L1)));
    const qint64 type = integerOf(objects.field(objects.column("Type"_L1)));
    const QString name = decodeText(objects.field(objects.column("Name"_L1))).text;
    const auto blob = objects.longValue(objects.column("LvProp"_L1));
    return {.name = name,
            .page = static_cast<unsigned long>(id & pageOfId),
            .isElsewhere = type == MDB_LINKED_TABLE,
            .hasBrokenProperties = blob && (!blob->isWhole() || !isSoundPropertyBlob(blob->bytes))};
}
