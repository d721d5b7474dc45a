#include "platform/portable/FileReading.h"

#include "platform/portable/SystemErrors.h"

#include <cerrno>

using namespace Qt::StringLiterals;

namespace {

class OpenedFile final : public FileReader
{
public:
    OpenedFile(Descriptor file, qint64 size, QString path)
        : m_file(std::move(file))
        , m_size(size)
        , m_path(std::move(path))
    {
    }

    qint64 size() const override { return m_size; }
    qint64 read(qint64 offset, char *to, qint64 count) const override
    {
        const qint64 got = readAt(m_file.get(), offset, to, count);
        if (got < 0)
            raiseSystemError(errno, "The file cannot be read"_L1, m_path);
        return got;
    }

private:
    Descriptor m_file;
    qint64 m_size;
    QString m_path;
};

} // namespace

qint64 readAt(int file, qint64 offset, char *to, qint64 count)
{
    qint64 done = 0;
    while (done < count) {
        const ssize_t got =
            pread(file, to + done, static_cast<size_t>(count - done), offset + done);
        if (got < 0 && errno != EINTR)
            return -1;
        if (got == 0)
            break;
        done += qMax<ssize_t>(got, 0);
    }
    return done;
}

std::unique_ptr<FileReader> readerOf(Descriptor file, qint64 size, const QString &path)
{
    return std::make_unique<OpenedFile>(std::move(file), size, path);
}
