#include "dbtoxml/DatabaseTable.h"

#include <QtEndian>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype longHeaderSize = 12;
constexpr quint32 inRow = 0x80000000, inOnePiece = 0x40000000, lengthBits = 0x3fffffff;

quint32 numberAt(const char *bytes)
{
    return qFromLittleEndian<quint32>(bytes);
}

} // namespace

// The entry is made by hand, so that the library parses no properties.
DatabaseTable::DatabaseTable(MdbHandle *handle, qint64 fileSize, unsigned long page)
    : m_handle(handle)
    , m_fileSize(fileSize)
{
    m_entry.mdb = handle;
    m_entry.object_type = MDB_TABLE;
    m_entry.table_pg = page;
    m_table = mdb_read_table(&m_entry);
    // Without a map of its pages the library would follow a null pointer.
    if (m_table && m_table->usage_map && m_table->map_sz > 0)
        mdb_read_columns(m_table);
}

DatabaseTable::~DatabaseTable()
{
    mdb_free_tabledef(m_table);
}

bool DatabaseTable::isReadable() const
{
    return m_table && m_table->columns && m_table->num_cols > 0
           && m_table->columns->len == m_table->num_cols;
}

MdbColumn *DatabaseTable::at(int column) const
{
    return static_cast<MdbColumn *>(m_table->columns->pdata[column]);
}

int DatabaseTable::column(QLatin1StringView name) const
{
    for (int i = 0; i < static_cast<int>(m_table->num_cols); ++i) {
        if (name.compare(QLatin1StringView(at(i)->name), Qt::CaseInsensitive) == 0)
            return i;
    }
    return -1;
}

int DatabaseTable::type(int column) const
{
    return at(column)->col_type;
}

bool DatabaseTable::next()
{
    if (mdb_fetch_row(m_table) == 0)
        return false;
    ++m_fetched;
    return true;
}

QByteArrayView DatabaseTable::field(int column) const
{
    if (column < 0)
        return {};
    const qsizetype begin = at(column)->cur_value_start, size = at(column)->cur_value_len;
    if (size == 0)
        return {};
    if (begin < 0 || size < 0 || begin + size > m_handle->fmt->pg_size) {
        ++m_misplaced;
        return {};
    }
    return QByteArrayView(m_handle->pg_buf + begin, size);
}

std::optional<LongValue> DatabaseTable::longValue(int column) const
{
    const QByteArrayView stored = field(column);
    if (stored.isEmpty())
        return {};
    if (stored.size() < longHeaderSize)
        return LongValue{{}, u"it has no whole header"_s};
    const quint32 header = numberAt(stored.data());
    const auto length = static_cast<qsizetype>(header & lengthBits);
    if (length > 0 && (header & inRow) == 0)
        return apart(numberAt(stored.data() + sizeof(header)), length, (header & inOnePiece) != 0);
    const QByteArray bytes = stored.sliced(longHeaderSize).toByteArray();
    if (bytes.size() == length)
        return LongValue{bytes, {}};
    return LongValue{bytes.left(length),
                     u"it is %1 bytes long and should be %2"_s.arg(bytes.size()).arg(length)};
}

// Its pieces are linked one to the next. The length rules: a chain may run in a circle.
LongValue DatabaseTable::apart(quint32 place, qsizetype length, bool isOnePiece) const
{
    LongValue value;
    const qsizetype most = qMin<qsizetype>(length, m_fileSize);
    while (place != 0 && value.bytes.size() < most) {
        constexpr qsizetype linkSize = sizeof(quint32);
        const qsizetype begin = isOnePiece ? 0 : linkSize;
        const auto next = piece(place);
        if (!next || next->size() <= begin)
            break;
        place = isOnePiece ? 0 : numberAt(next->data());
        value.bytes.append(next->sliced(begin));
    }
    if (value.bytes.size() < length)
        value.fault = u"only %1 of its %2 bytes can be read"_s.arg(value.bytes.size()).arg(length);
    else if (value.bytes.size() > length || place != 0)
        value.fault = u"it goes on behind its length of %1 bytes"_s.arg(length);
    value.bytes.truncate(length);
    return value;
}

std::optional<QByteArrayView> DatabaseTable::piece(quint32 place) const
{
    void *page = nullptr;
    int begin = 0;
    size_t size = 0;
    if (mdb_find_pg_row(m_handle, static_cast<int>(place), &page, &begin, &size) != 0 || begin < 0)
        return {};
    const auto pageSize = static_cast<size_t>(m_handle->fmt->pg_size);
    if (size > pageSize || static_cast<size_t>(begin) > pageSize - size)
        return {};
    return QByteArrayView(static_cast<const char *>(page) + begin, static_cast<qsizetype>(size));
}
