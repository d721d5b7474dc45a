#include "tools/import/ZipArchive.h"

#include "platform/Paths.h"
#include "platform/QvError.h"

#include <QSet>

#include <algorithm>
#include <memory>

#include <zip.h>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 megabyte = 1024 * 1024;
constexpr qint64 largestArchive = 512 * megabyte;
constexpr qint64 largestEntry = 256 * megabyte;
constexpr qint64 largestTotal = 1024 * megabyte;
constexpr qint64 mostEntries = 50'000;
// Text packs at best some 50:1; what is far beyond that was made to fill disks.
constexpr qint64 highestRatio = 200;

struct CloseArchive
{
    void operator()(zip_t *archive) const { zip_discard(archive); }
};
struct CloseEntry
{
    void operator()(zip_file_t *entry) const { zip_fclose(entry); }
};

QString errorText(zip_error_t &error)
{
    const QString text = QString::fromUtf8(zip_error_strerror(&error));
    zip_error_fini(&error);
    return text;
}

/// An archive in memory, unpacked entry by entry.
class Archive final
{
public:
    Archive(FileSystem &files, const QString &path, QString folder)
        : m_files(files)
        , m_folder(withBackslash(folder))
        , m_bytes(readAll(files, path))
    {
        zip_error_t error;
        zip_error_init(&error);
        zip_source_t *source = zip_source_buffer_create(
            m_bytes.constData(), static_cast<zip_uint64_t>(m_bytes.size()), 0, &error);
        if (source != nullptr)
            m_zip.reset(zip_open_from_source(source, ZIP_RDONLY, &error));
        if (m_zip == nullptr) {
            zip_source_free(source);
            throw QvError(PathFileAccess, {},
                          u"%1 cannot be opened: %2"_s.arg(path, errorText(error)));
        }
        if (zip_get_num_entries(m_zip.get(), 0) > mostEntries)
            throw QvError(PathFileAccess, {},
                          u"%1 holds more than %2 files."_s.arg(path).arg(mostEntries));
    }

    QList<RefusedEntry> unpack(const Progress &progress)
    {
        m_files.makeFolder(withoutBackslash(m_folder));
        QList<RefusedEntry> refused;
        const zip_int64_t count = zip_get_num_entries(m_zip.get(), 0);
        for (zip_int64_t i = 0; i < count; ++i) {
            const auto index = static_cast<zip_uint64_t>(i);
            const QString name =
                QString::fromUtf8(zip_get_name(m_zip.get(), index, ZIP_FL_ENC_GUESS));
            progress.step(static_cast<int>(i), static_cast<int>(count), name);
            const QString reason = unpack(index, name);
            if (!reason.isEmpty())
                refused.append({name, reason});
        }
        return refused;
    }

private:
    static QByteArray readAll(FileSystem &files, const QString &path)
    {
        if (files.status(path).size > largestArchive)
            throw QvError(PathFileAccess, {},
                          u"%1 is larger than %2 MB."_s.arg(path).arg(largestArchive / megabyte));
        return files.readFile(path);
    }

    /// "" when it was unpacked or is a folder, else why not.
    QString unpack(zip_uint64_t index, const QString &name)
    {
        zip_stat_t entry;
        zip_stat_init(&entry);
        if (zip_stat_index(m_zip.get(), index, 0, &entry) != 0)
            return u"It is damaged."_s;
        if (name.endsWith(u'/'))
            return {};
        const QString relative = QString(name).replace(u'/', u'\\');
        for (const QString &reason :
             {unsafeName(relative), takenName(relative), unwanted(index, entry)}) {
            if (!reason.isEmpty())
                return reason;
        }
        QByteArray content;
        if (const QString reason = read(index, static_cast<qint64>(entry.size), content);
            !reason.isEmpty())
            return reason;
        m_total += content.size();
        makeFolders(relative);
        m_taken.insert(relative.toCaseFolded());
        // The name is known to be free; written there, it would be looked for in all its folder.
        const QString part = withoutBackslash(m_folder) + u".part"_s;
        m_files.replaceFile(part, content, {.sync = false});
        m_files.move(part, m_folder + relative, NameCheck::Exact);
        return {};
    }

    static QString unsafeName(const QString &relative)
    {
        const QStringList pieces = relative.split(u'\\');
        if (!insideOf(u"X:\\"_s, relative) || pieces.contains(QString()) || pieces.contains(u"."_s))
            return u"Its name leads out of the archive, or is no name on every system."_s;
        if (!std::all_of(pieces.begin(), pieces.end(), isSafeName))
            return u"Its name cannot be used on every system."_s;
        if (pieces.first() == "__MACOSX"_L1)
            return u"It holds no content, but notes of the system that packed it."_s;
        return {};
    }

    /// In any letter case, also as a folder of another entry or the other way round.
    [[nodiscard]] QString takenName(const QString &relative) const
    {
        const QString key = relative.toCaseFolded();
        bool taken = m_taken.contains(key) || m_folders.contains(key);
        for (qsizetype slash = key.indexOf(u'\\'); slash >= 0;
             slash = key.indexOf(u'\\', slash + 1))
            taken |= m_taken.contains(key.first(slash));
        return taken ? u"Another file of the archive has this name, in these or other capitals."_s
                     : QString();
    }

    QString unwanted(zip_uint64_t index, const zip_stat_t &entry)
    {
        zip_uint8_t system = 0;
        zip_uint32_t attributes = 0;
        zip_file_get_external_attributes(m_zip.get(), index, 0, &system, &attributes);
        constexpr zip_uint32_t fileType = 0170000, link = 0120000;
        if (system == ZIP_OPSYS_UNIX && ((attributes >> 16) & fileType) == link)
            return u"It is a link; links are not followed."_s;
        if (entry.encryption_method != ZIP_EM_NONE)
            return u"It is encrypted."_s;
        const auto size = static_cast<qint64>(qMin<zip_uint64_t>(entry.size, largestTotal + 1));
        if (size > largestEntry)
            return u"It is larger than %1 MB."_s.arg(largestEntry / megabyte);
        if (size > megabyte && size / highestRatio > static_cast<qint64>(entry.comp_size))
            return u"It unpacks to more than %1 times its size."_s.arg(highestRatio);
        if (m_total + size > largestTotal)
            return u"The files of the archive are larger than %1 MB together."_s.arg(largestTotal
                                                                                     / megabyte);
        return {};
    }

    /// Reads one byte more than the entry says it has, so that one that lies is noticed.
    QString read(zip_uint64_t index, qint64 size, QByteArray &content)
    {
        const std::unique_ptr<zip_file_t, CloseEntry> entry(zip_fopen_index(m_zip.get(), index, 0));
        if (entry == nullptr)
            return u"It cannot be unpacked: %1"_s.arg(QString::fromUtf8(zip_strerror(m_zip.get())));
        content.resize(size + 1);
        qint64 filled = 0;
        while (filled <= size) {
            const zip_int64_t got = zip_fread(entry.get(), content.data() + filled,
                                              static_cast<zip_uint64_t>(content.size() - filled));
            if (got < 0)
                return u"It is damaged: %1"_s.arg(
                    QString::fromUtf8(zip_file_strerror(entry.get())));
            if (got == 0)
                break;
            filled += got;
        }
        content.truncate(filled);
        return filled == size ? QString() : u"It is damaged: its size is not what it says."_s;
    }

    void makeFolders(const QString &relative)
    {
        for (qsizetype slash = relative.indexOf(u'\\'); slash >= 0;
             slash = relative.indexOf(u'\\', slash + 1)) {
            const QString key = relative.first(slash).toCaseFolded();
            if (m_folders.contains(key))
                continue;
            m_folders.insert(key);
            m_files.makeFolder(m_folder + relative.first(slash));
        }
    }

    FileSystem &m_files;
    QString m_folder; ///< with backslash
    QByteArray m_bytes;
    std::unique_ptr<zip_t, CloseArchive> m_zip;
    QSet<QString> m_taken, m_folders;
    qint64 m_total = 0;
};

} // namespace

QList<RefusedEntry> unpackArchive(FileSystem &files, const QString &archive, const QString &folder,
                                  const Progress &progress)
{
    return Archive(files, archive, folder).unpack(progress);
}
