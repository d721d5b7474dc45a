#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

struct libdeflate_compressor;
struct libdeflate_decompressor;

/// Compresses whole files, level 6. One per thread, to be used again and again.
class Deflate final
{
public:
    Deflate();
    Deflate(const Deflate &) = delete;
    Deflate &operator=(const Deflate &) = delete;
    ~Deflate();

    [[nodiscard]] QByteArray packed(const QByteArray &content);
    /// Whether these are the bytes of a whole member that unpacks to this size and checksum.
    [[nodiscard]] bool unpacksTo(const QByteArray &packed, qint64 size, quint32 sum);
    [[nodiscard]] static quint32 sum(const QByteArray &content); ///< CRC-32
    /// Which library and level: another one makes other bytes of the same content.
    [[nodiscard]] static QString method();

private:
    char *room(size_t bytes);

    struct Free
    {
        void operator()(libdeflate_compressor *one) const;
        void operator()(libdeflate_decompressor *one) const;
    };
    std::unique_ptr<libdeflate_compressor, Free> m_compressor;
    std::unique_ptr<libdeflate_decompressor, Free> m_decompressor;
    std::unique_ptr<char[]> m_room;
    size_t m_size = 0;
};
