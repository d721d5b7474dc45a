#pragma once

#include "platform/FileStreams.h"

#include <functional>

/// Passes everything on to other files, and asks `disturb` before whatever changes them: an error
/// that this raises is what the caller meets.
class DisturbedFiles final : public FileSystem
{
public:
    explicit DisturbedFiles(FileSystem &files)
        : m_files(files)
    {
    }

    std::function<void()> disturb = [] {};
    std::function<void()> look = [] {}; ///< asked before whatever only reads
    bool syncs = true; ///< false: nothing is flushed to the disk, which takes most of the time

    FileStatus status(const QString &path) override
    {
        look();
        return m_files.status(path);
    }
    QByteArray readFile(const QString &path, qint64 limit) override
    {
        look();
        return m_files.readFile(path, limit);
    }
    void replaceFile(const QString &path, const QByteArray &content,
                     ReplaceOptions options) override
    {
        disturb();
        options.sync = options.sync && syncs;
        m_files.replaceFile(path, content, options);
    }
    std::unique_ptr<FileReader> openFile(const QString &path) override
    {
        look();
        return m_files.openFile(path);
    }
    std::unique_ptr<FileWriter> startFile(const QString &path, ReplaceOptions options) override
    {
        disturb();
        options.sync = options.sync && syncs;
        return std::make_unique<Writer>(*this, m_files.startFile(path, options));
    }
    void copyFile(const QString &from, const QString &to, NameCheck check) override
    {
        disturb();
        m_files.copyFile(from, to, check);
    }
    void makeFolder(const QString &path, NameCheck check) override
    {
        disturb();
        m_files.makeFolder(path, check);
    }
    void move(const QString &from, const QString &to, NameCheck check) override
    {
        disturb();
        m_files.move(from, to, check);
    }
    void removeFile(const QString &path, bool evenReadOnly) override
    {
        disturb();
        m_files.removeFile(path, evenReadOnly);
    }
    void removeFolder(const QString &path) override
    {
        disturb();
        m_files.removeFolder(path);
    }
    QList<FolderEntry> entries(const QString &folder) override
    {
        look();
        return m_files.entries(folder);
    }
    int attributes(const QString &path) override { return m_files.attributes(path); }
    void setAttributes(const QString &path, int attributes) override
    {
        disturb();
        m_files.setAttributes(path, attributes);
    }
    void syncFolder(const QString &folder) override
    {
        disturb();
        if (syncs)
            m_files.syncFolder(folder);
    }
    void syncTree(const QString &folder) override
    {
        if (syncs)
            m_files.syncTree(folder);
    }
    std::unique_ptr<FileLock> lock(const QString &path, const QString &like,
                                   std::chrono::milliseconds patience) override
    {
        return m_files.lock(path, like, patience);
    }
    QString nativePath(const QString &path) override { return m_files.nativePath(path); }
    QString productPath(const QString &native) override { return m_files.productPath(native); }

private:
    class Writer final : public FileWriter
    {
    public:
        Writer(DisturbedFiles &files, std::unique_ptr<FileWriter> file)
            : m_disturbed(files)
            , m_file(std::move(file))
        {
        }
        void write(qint64 offset, const char *bytes, qint64 count) override
        {
            m_disturbed.disturb();
            m_file->write(offset, bytes, count);
        }
        void putInPlace() override
        {
            m_disturbed.disturb();
            m_file->putInPlace();
        }

    private:
        DisturbedFiles &m_disturbed;
        std::unique_ptr<FileWriter> m_file;
    };

    FileSystem &m_files;
};
