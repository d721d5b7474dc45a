#include "tools/pack/LastPack.h"

#include "platform/FileStreams.h"
#include "platform/QvError.h"

#include <algorithm>
#include <exception>
#include <mutex>

#include <zip.h>

using namespace Qt::StringLiterals;

namespace {

constexpr quint64 largestManifest = 256 * 1024 * 1024;

struct CloseEntry
{
    void operator()(zip_file_t *entry) const { zip_fclose(entry); }
};

/// An open file as the archive library wants to see it. Nothing may be thrown through that library.
class Source final
{
public:
    Source(FileSystem &files, const QString &path)
        : m_file(files.openFile(path))
    {
        zip_error_init(&m_error);
    }
    Source(const Source &) = delete;
    Source &operator=(const Source &) = delete;
    ~Source() { zip_error_fini(&m_error); }

    [[nodiscard]] qint64 size() const { return m_file->size(); }
    static zip_int64_t answer(void *self, void *data, zip_uint64_t length, zip_source_cmd_t command)
    {
        return static_cast<Source *>(self)->answer(data, length, command);
    }

private:
    zip_int64_t answer(void *data, zip_uint64_t length, zip_source_cmd_t command)
    {
        switch (command) {
        case ZIP_SOURCE_SUPPORTS:
            return ZIP_SOURCE_SUPPORTS_SEEKABLE;
        case ZIP_SOURCE_OPEN:
            m_place = 0;
            return 0;
        case ZIP_SOURCE_READ:
            return read(data, length);
        case ZIP_SOURCE_SEEK:
            return seek(data, length);
        case ZIP_SOURCE_TELL:
            return static_cast<zip_int64_t>(m_place);
        case ZIP_SOURCE_STAT:
            return status(data);
        case ZIP_SOURCE_ERROR:
            return zip_error_to_data(&m_error, data, length);
        case ZIP_SOURCE_CLOSE:
        case ZIP_SOURCE_FREE:
            return 0;
        default:
            zip_error_set(&m_error, ZIP_ER_OPNOTSUPP, 0);
            return -1;
        }
    }

    zip_int64_t read(void *data, zip_uint64_t length)
    {
        try {
            const qint64 got = m_file->read(static_cast<qint64>(m_place), static_cast<char *>(data),
                                            static_cast<qint64>(length));
            m_place += static_cast<zip_uint64_t>(got);
            return got;
        } catch (...) { // what cannot be read of the last pack is packed anew
            zip_error_set(&m_error, ZIP_ER_READ, 0);
            return -1;
        }
    }

    zip_int64_t seek(void *data, zip_uint64_t length)
    {
        const zip_int64_t place = zip_source_seek_compute_offset(
            m_place, static_cast<zip_uint64_t>(m_file->size()), data, length, &m_error);
        if (place < 0)
            return -1;
        m_place = static_cast<zip_uint64_t>(place);
        return 0;
    }

    zip_int64_t status(void *data) const
    {
        auto *status = static_cast<zip_stat_t *>(data);
        zip_stat_init(status);
        status->valid = ZIP_STAT_SIZE;
        status->size = static_cast<zip_uint64_t>(m_file->size());
        return sizeof *status;
    }

    std::unique_ptr<FileReader> m_file;
    zip_uint64_t m_place = 0;
    zip_error_t m_error;
};

struct CloseArchive
{
    void operator()(zip_t *archive) const { zip_discard(archive); }
};

} // namespace

class LastPack::Archive final
{
public:
    Archive(FileSystem &files, const QString &path)
        : m_source(files, path)
        , m_path(path)
    {
        zip_error_t error;
        zip_error_init(&error);
        zip_source_t *source = zip_source_function_create(&Source::answer, &m_source, &error);
        if (source != nullptr)
            m_zip.reset(zip_open_from_source(source, ZIP_RDONLY, &error));
        if (m_zip == nullptr) {
            zip_source_free(source);
            const QString reason = QString::fromUtf8(zip_error_strerror(&error));
            zip_error_fini(&error);
            throw QvError(PathFileAccess, {}, u"%1 cannot be opened: %2"_s.arg(path, reason));
        }
        zip_error_fini(&error);
        m_manifest =
            readManifest(content(manifestName), path + u'/' + QLatin1StringView(manifestName));
    }

    [[nodiscard]] const PackManifest &manifest() const { return m_manifest; }

    std::optional<Member> find(std::string_view path)
    {
        const std::string name = m_manifest.project.toStdString() + '/' + std::string(path);
        const std::lock_guard guard(m_guard);
        zip_stat_t entry;
        zip_stat_init(&entry);
        if (zip_stat(m_zip.get(), name.c_str(), 0, &entry) != 0)
            return {};
        const bool isStored = entry.comp_method == ZIP_CM_STORE;
        if ((!isStored && entry.comp_method != ZIP_CM_DEFLATE)
            || entry.encryption_method != ZIP_EM_NONE)
            return {};
        return Member{.index = entry.index,
                      .size = static_cast<qint64>(entry.size),
                      .sum = entry.crc,
                      .isStored = isStored};
    }

    QByteArray packed(quint64 index)
    {
        const std::lock_guard guard(m_guard);
        zip_stat_t entry;
        zip_stat_init(&entry);
        if (zip_stat_index(m_zip.get(), index, 0, &entry) != 0)
            return {};
        return read(index, entry.comp_size, ZIP_FL_COMPRESSED);
    }

private:
    QByteArray content(const char *name)
    {
        zip_stat_t entry;
        zip_stat_init(&entry);
        if (zip_stat(m_zip.get(), name, 0, &entry) != 0 || entry.size > largestManifest)
            throw QvError(PathFileAccess, {}, u"%1 is no packed copy of a project."_s.arg(m_path));
        return read(entry.index, entry.size, 0);
    }

    // Sizes in an archive may lie: more than the file holds is never asked for.
    QByteArray read(quint64 index, quint64 size, zip_flags_t flags)
    {
        if (flags == ZIP_FL_COMPRESSED && size > static_cast<quint64>(m_source.size()))
            return {};
        const std::unique_ptr<zip_file_t, CloseEntry> entry(
            zip_fopen_index(m_zip.get(), index, flags));
        if (entry == nullptr)
            return {};
        QByteArray bytes(static_cast<qsizetype>(size), Qt::Uninitialized);
        qsizetype filled = 0;
        while (filled < bytes.size()) {
            const zip_int64_t got = zip_fread(entry.get(), bytes.data() + filled,
                                              static_cast<zip_uint64_t>(bytes.size() - filled));
            if (got <= 0)
                break;
            filled += static_cast<qsizetype>(got);
        }
        bytes.truncate(filled);
        return bytes;
    }

    Source m_source;
    QString m_path;
    std::unique_ptr<zip_t, CloseArchive> m_zip;
    std::mutex m_guard; ///< the library's archives are for one thread at a time
    PackManifest m_manifest;
};

LastPack::LastPack(FileSystem &files, const QString &path)
    : m_archive(std::make_unique<Archive>(files, path))
{
}

LastPack::~LastPack() = default;

const PackManifest &LastPack::manifest() const
{
    return m_archive->manifest();
}

std::optional<LastPack::Member> LastPack::find(std::string_view path) const
{
    return m_archive->find(path);
}

QByteArray LastPack::packed(const Member &member) const
{
    return m_archive->packed(member.index);
}
