#include "platform/FileSystem.h"

#include "platform/FileStreams.h"

#include <algorithm>
#include <cstring>

namespace {

class MemoryReader final : public FileReader
{
public:
    explicit MemoryReader(QByteArray content)
        : m_content(std::move(content))
    {
    }

    qint64 size() const override { return m_content.size(); }
    qint64 read(qint64 offset, char *to, qint64 count) const override
    {
        const qint64 there = std::clamp<qint64>(m_content.size() - offset, 0, count);
        if (there > 0)
            std::memcpy(to, m_content.constData() + offset, static_cast<size_t>(there));
        return there;
    }

private:
    QByteArray m_content;
};

class MemoryWriter final : public FileWriter
{
public:
    MemoryWriter(FileSystem &files, QString path, ReplaceOptions options)
        : m_files(files)
        , m_path(std::move(path))
        , m_options(options)
    {
    }

    void write(qint64 offset, const char *bytes, qint64 count) override
    {
        m_content.replace(offset, count, QByteArrayView(bytes, count));
    }
    void putInPlace() override { m_files.replaceFile(m_path, m_content, m_options); }

private:
    FileSystem &m_files;
    QString m_path;
    ReplaceOptions m_options;
    QByteArray m_content;
};

} // namespace

std::unique_ptr<FileReader> FileSystem::openFile(const QString &path)
{
    return std::make_unique<MemoryReader>(readFile(path));
}

std::unique_ptr<FileWriter> FileSystem::startFile(const QString &path, ReplaceOptions options)
{
    return std::make_unique<MemoryWriter>(*this, path, options);
}
