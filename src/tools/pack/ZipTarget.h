#pragma once

#include "platform/FileStreams.h"

#include <QByteArray>

#include <exception>

#include <zip.h>

/// What was thrown on the far side of the archive library, which lets nothing through.
struct ZipTrouble
{
    std::exception_ptr thrown;

    template <typename Body>
    zip_int64_t guard(zip_error_t &error, int code, Body body)
    {
        try {
            return body();
        } catch (...) {
            thrown = std::current_exception();
            zip_error_set(&error, code, 0);
            return -1;
        }
    }
};

/// The file as the archive library writes it. It goes back to each entry's head after the entry's
/// bytes, so the newest part is kept here until it is large.
class ZipTarget final
{
public:
    ZipTarget(FileWriter &file, ZipTrouble &trouble);
    ZipTarget(const ZipTarget &) = delete;
    ZipTarget &operator=(const ZipTarget &) = delete;
    ~ZipTarget();

    /// For `zip_source_function_create`; `self` is a ZipTarget.
    static zip_int64_t answer(void *self, void *data, zip_uint64_t length,
                              zip_source_cmd_t command);

private:
    zip_int64_t answer(void *data, zip_uint64_t length, zip_source_cmd_t command);
    void write(const char *bytes, qint64 count);
    void flush();
    zip_int64_t seek(void *data, zip_uint64_t length);
    zip_int64_t status(void *data) const;
    [[nodiscard]] qint64 size() const { return m_flushed + m_newest.size(); }

    FileWriter &m_file;
    ZipTrouble &m_trouble;
    zip_error_t m_error;
    QByteArray m_newest;
    qint64 m_flushed = 0; ///< bytes of the file that lie before `m_newest`
    qint64 m_place = 0;
};
