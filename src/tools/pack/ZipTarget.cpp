#include "tools/pack/ZipTarget.h"

#include <algorithm>

namespace {

constexpr qsizetype flushAt = 1024 * 1024;

} // namespace

ZipTarget::ZipTarget(FileWriter &file, ZipTrouble &trouble)
    : m_file(file)
    , m_trouble(trouble)
{
    zip_error_init(&m_error);
    m_newest.reserve(2 * flushAt);
}

ZipTarget::~ZipTarget()
{
    zip_error_fini(&m_error);
}

zip_int64_t ZipTarget::answer(void *self, void *data, zip_uint64_t length, zip_source_cmd_t command)
{
    return static_cast<ZipTarget *>(self)->answer(data, length, command);
}

zip_int64_t ZipTarget::answer(void *data, zip_uint64_t length, zip_source_cmd_t command)
{
    switch (command) {
    case ZIP_SOURCE_SUPPORTS:
        return ZIP_SOURCE_SUPPORTS_WRITABLE;
    case ZIP_SOURCE_WRITE:
        return m_trouble.guard(m_error, ZIP_ER_WRITE, [&] {
            write(static_cast<const char *>(data), static_cast<qint64>(length));
            return static_cast<zip_int64_t>(length);
        });
    case ZIP_SOURCE_COMMIT_WRITE:
        return m_trouble.guard(m_error, ZIP_ER_WRITE, [&] {
            flush();
            return 0;
        });
    case ZIP_SOURCE_SEEK:
    case ZIP_SOURCE_SEEK_WRITE:
        return seek(data, length);
    case ZIP_SOURCE_TELL:
    case ZIP_SOURCE_TELL_WRITE:
        return m_place;
    case ZIP_SOURCE_STAT:
        return status(data);
    case ZIP_SOURCE_ERROR:
        return zip_error_to_data(&m_error, data, length);
    default:
        return 0;
    }
}

void ZipTarget::write(const char *bytes, qint64 count)
{
    if (m_place < m_flushed) {
        const qint64 before = std::min(count, m_flushed - m_place);
        m_file.write(m_place, bytes, before);
        m_place += before;
        bytes += before;
        count -= before;
    }
    m_newest.replace(m_place - m_flushed, count, QByteArrayView(bytes, count));
    m_place += count;
    if (m_newest.size() >= flushAt)
        flush();
}

void ZipTarget::flush()
{
    m_file.write(m_flushed, m_newest.constData(), m_newest.size());
    m_flushed += m_newest.size();
    m_newest.resize(0);
}

zip_int64_t ZipTarget::seek(void *data, zip_uint64_t length)
{
    const zip_int64_t place =
        zip_source_seek_compute_offset(static_cast<zip_uint64_t>(m_place),
                                       static_cast<zip_uint64_t>(size()), data, length, &m_error);
    if (place >= 0)
        m_place = place;
    return place < 0 ? -1 : 0;
}

zip_int64_t ZipTarget::status(void *data) const
{
    auto *status = static_cast<zip_stat_t *>(data);
    zip_stat_init(status);
    status->valid = ZIP_STAT_SIZE;
    status->size = static_cast<zip_uint64_t>(size());
    return sizeof *status;
}
