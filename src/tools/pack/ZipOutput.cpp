#include "tools/pack/ZipOutput.h"

#include "platform/QvError.h"
#include "tools/pack/ZipTarget.h"

#include <QDateTime>

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <memory>

#include <zip.h>

using namespace Qt::StringLiterals;

namespace {

/// One entry as the archive library reads it.
class Source final
{
public:
    Source(size_t index, const ZipEntry &entry, const std::function<QByteArray(size_t)> &packed,
           ZipTrouble &trouble)
        : m_index(index)
        , m_entry(entry)
        , m_packed(packed)
        , m_trouble(trouble)
    {
        zip_error_init(&m_error);
    }
    Source(const Source &) = delete;
    Source &operator=(const Source &) = delete;
    ~Source() { zip_error_fini(&m_error); }

    static zip_int64_t answer(void *self, void *data, zip_uint64_t length, zip_source_cmd_t command)
    {
        return static_cast<Source *>(self)->answer(data, length, command);
    }

private:
    zip_int64_t answer(void *data, zip_uint64_t length, zip_source_cmd_t command)
    {
        switch (command) {
        case ZIP_SOURCE_SUPPORTS:
            return zip_source_make_command_bitmap(ZIP_SOURCE_OPEN, ZIP_SOURCE_READ,
                                                  ZIP_SOURCE_CLOSE, ZIP_SOURCE_STAT,
                                                  ZIP_SOURCE_ERROR, ZIP_SOURCE_FREE, -1);
        case ZIP_SOURCE_STAT:
            return m_trouble.guard(m_error, ZIP_ER_READ, [&] { return status(data); });
        case ZIP_SOURCE_READ:
            return read(data, length);
        case ZIP_SOURCE_CLOSE:
            m_bytes = QByteArray();
            return 0;
        case ZIP_SOURCE_ERROR:
            return zip_error_to_data(&m_error, data, length);
        default:
            return 0;
        }
    }

    // The library asks for it before it reads, and once more at the end.
    zip_int64_t status(void *data)
    {
        if (m_size < 0) {
            m_bytes = m_packed(m_index);
            m_size = m_bytes.size();
        }
        auto *status = static_cast<zip_stat_t *>(data);
        zip_stat_init(status);
        status->valid = ZIP_STAT_SIZE | ZIP_STAT_COMP_SIZE | ZIP_STAT_COMP_METHOD | ZIP_STAT_CRC;
        status->size = static_cast<zip_uint64_t>(m_entry.size);
        status->comp_size = static_cast<zip_uint64_t>(m_size);
        status->comp_method = m_entry.isStored ? ZIP_CM_STORE : ZIP_CM_DEFLATE;
        status->crc = m_entry.sum;
        return sizeof *status;
    }

    zip_int64_t read(void *data, zip_uint64_t length)
    {
        const qint64 count = std::min(static_cast<qint64>(length), m_bytes.size() - m_read);
        std::memcpy(data, m_bytes.constData() + m_read, static_cast<size_t>(count));
        m_read += count;
        return count;
    }

    size_t m_index;
    const ZipEntry &m_entry;
    const std::function<QByteArray(size_t)> &m_packed;
    ZipTrouble &m_trouble;
    zip_error_t m_error;
    QByteArray m_bytes;
    qint64 m_size = -1, m_read = 0;
};

/// The time in the archive's own form, which knows neither zones nor odd seconds, in UTC; and the
/// full seconds in the extra field that most programs look at first.
void setTime(zip_t *archive, zip_uint64_t index, qint64 modified)
{
    const QDateTime earliest(QDate(1980, 1, 1), QTime(0, 0), Qt::UTC);
    const QDateTime latest(QDate(2107, 12, 31), QTime(23, 59, 58), Qt::UTC);
    const QDateTime time =
        std::clamp(QDateTime::fromMSecsSinceEpoch(modified, Qt::UTC), earliest, latest);
    const QDate day = time.date();
    const auto date = ((day.year() - 1980) << 9) | (day.month() << 5) | day.day();
    const auto clock =
        (time.time().hour() << 11) | (time.time().minute() << 5) | (time.time().second() / 2);
    zip_file_set_dostime(archive, index, static_cast<zip_uint16_t>(clock),
                         static_cast<zip_uint16_t>(date), 0);

    const qint64 seconds =
        std::clamp<qint64>(modified / 1000, 0, std::numeric_limits<qint32>::max());
    std::array<zip_uint8_t, 5> field{1}; // only the time of the last change
    for (size_t i = 1; i < field.size(); ++i)
        field[i] = static_cast<zip_uint8_t>(seconds >> (8 * (i - 1)));
    constexpr zip_uint16_t universalTime = 0x5455;
    zip_file_extra_field_set(archive, index, universalTime, ZIP_EXTRA_FIELD_NEW, field.data(),
                             field.size(), ZIP_FL_LOCAL | ZIP_FL_CENTRAL);
}

struct Discard
{
    void operator()(zip_t *archive) const { zip_discard(archive); }
};

/// An archive in the making.
class Archive final
{
public:
    Archive(FileWriter &file, const std::function<QByteArray(size_t)> &packed)
        : m_target(file, m_trouble)
        , m_packed(packed)
    {
        zip_error_t error;
        zip_error_init(&error);
        zip_source_t *target = zip_source_function_create(&ZipTarget::answer, &m_target, &error);
        if (target != nullptr)
            m_zip.reset(zip_open_from_source(target, ZIP_CREATE | ZIP_TRUNCATE, &error));
        if (m_zip == nullptr)
            zip_source_free(target);
        check(m_zip != nullptr, error);
        zip_error_fini(&error);
    }

    void add(const ZipEntry &entry)
    {
        m_sources.push_back(std::make_unique<Source>(m_sources.size(), entry, m_packed, m_trouble));
        zip_source_t *source =
            zip_source_function(m_zip.get(), &Source::answer, m_sources.back().get());
        const zip_int64_t added = source == nullptr ? -1
                                                    : zip_file_add(m_zip.get(), entry.name.c_str(),
                                                                   source, ZIP_FL_ENC_UTF_8);
        if (added < 0)
            zip_source_free(source);
        check(added >= 0, *zip_get_error(m_zip.get()));
        const auto index = static_cast<zip_uint64_t>(added);
        zip_set_file_compression(m_zip.get(), index, entry.isStored ? ZIP_CM_STORE : ZIP_CM_DEFLATE,
                                 0);
        setTime(m_zip.get(), index, entry.modified);
    }

    void finish()
    {
        check(zip_close(m_zip.get()) == 0, *zip_get_error(m_zip.get()));
        (void)m_zip.release(); // closed
    }

private:
    void check(bool good, zip_error_t &error) const
    {
        if (good)
            return;
        if (m_trouble.thrown)
            std::rethrow_exception(m_trouble.thrown);
        throw QvError(PathFileAccess, {},
                      u"The archive cannot be made: "_s
                          + QString::fromUtf8(zip_error_strerror(&error)));
    }

    ZipTrouble m_trouble;
    ZipTarget m_target;
    const std::function<QByteArray(size_t)> &m_packed;
    std::vector<std::unique_ptr<Source>> m_sources;
    std::unique_ptr<zip_t, Discard> m_zip; // before the sources, which it uses to its end
};

} // namespace

void writeZip(FileWriter &file, const std::vector<ZipEntry> &entries,
              const std::function<QByteArray(size_t)> &packed)
{
    Archive archive(file, packed);
    for (const ZipEntry &entry : entries)
        archive.add(entry);
    archive.finish();
}
