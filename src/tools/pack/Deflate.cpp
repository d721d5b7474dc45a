#include "tools/pack/Deflate.h"

#include <libdeflate.h>

#include <new>

using namespace Qt::StringLiterals;

namespace {

constexpr int level = 6;

} // namespace

void Deflate::Free::operator()(libdeflate_compressor *one) const
{
    libdeflate_free_compressor(one);
}

void Deflate::Free::operator()(libdeflate_decompressor *one) const
{
    libdeflate_free_decompressor(one);
}

Deflate::Deflate()
    : m_compressor(libdeflate_alloc_compressor(level))
    , m_decompressor(libdeflate_alloc_decompressor())
{
    if (!m_compressor || !m_decompressor)
        throw std::bad_alloc();
}

Deflate::~Deflate() = default;

char *Deflate::room(size_t bytes)
{
    if (bytes > m_size) {
        m_room.reset(); // first, so that the two are never there at once
        m_room.reset(new char[bytes]);
        m_size = bytes;
    }
    return m_room.get();
}

QByteArray Deflate::packed(const QByteArray &content)
{
    const auto size = static_cast<size_t>(content.size());
    const size_t most = libdeflate_deflate_compress_bound(m_compressor.get(), size);
    char *const to = room(most);
    const size_t length =
        libdeflate_deflate_compress(m_compressor.get(), content.constData(), size, to, most);
    return {to, static_cast<qsizetype>(length)};
}

bool Deflate::unpacksTo(const QByteArray &packed, qint64 size, quint32 sum)
{
    const auto wanted = static_cast<size_t>(size);
    char *const to = room(wanted);
    const auto length = static_cast<size_t>(packed.size());
    size_t read = 0;
    const auto result = libdeflate_deflate_decompress_ex(m_decompressor.get(), packed.constData(),
                                                         length, to, wanted, &read, nullptr);
    return result == LIBDEFLATE_SUCCESS && read == length && libdeflate_crc32(0, to, wanted) == sum;
}

quint32 Deflate::sum(const QByteArray &content)
{
    return libdeflate_crc32(0, content.constData(), static_cast<size_t>(content.size()));
}

QString Deflate::method()
{
    return u"libdeflate %1, level %2"_s.arg(QLatin1StringView(LIBDEFLATE_VERSION_STRING))
        .arg(level);
}
