#include "tools/migration/GrowingFiles.h"

#include "platform/Paths.h"

GrowingFiles::GrowingFiles(FileSystem &files, QString place, QString growing)
    : m_files(files)
    , m_place(std::move(place))
    , m_growing(std::move(growing))
{
}

QString GrowingFiles::now(const QString &path) const
{
    if (!withBackslash(path).startsWith(m_place, Qt::CaseInsensitive))
        return path;
    return withoutBackslash(m_growing + path.mid(m_place.size()));
}

FileStatus GrowingFiles::status(const QString &path)
{
    return m_files.status(now(path));
}

QByteArray GrowingFiles::readFile(const QString &path, qint64 limit)
{
    return m_files.readFile(now(path), limit);
}

void GrowingFiles::replaceFile(const QString &path, const QByteArray &content,
                               ReplaceOptions options)
{
    options.sync = false;
    m_files.replaceFile(now(path), content, options);
}

std::unique_ptr<FileReader> GrowingFiles::openFile(const QString &path)
{
    return m_files.openFile(now(path));
}

std::unique_ptr<FileWriter> GrowingFiles::startFile(const QString &path, ReplaceOptions options)
{
    options.sync = false;
    return m_files.startFile(now(path), options);
}

void GrowingFiles::copyFile(const QString &from, const QString &to, NameCheck check)
{
    m_files.copyFile(now(from), now(to), check);
}

void GrowingFiles::makeFolder(const QString &path, NameCheck check)
{
    m_files.makeFolder(now(path), check);
}

void GrowingFiles::move(const QString &from, const QString &to, NameCheck check)
{
    m_files.move(now(from), now(to), check);
}

void GrowingFiles::removeFile(const QString &path, bool evenReadOnly)
{
    m_files.removeFile(now(path), evenReadOnly);
}

void GrowingFiles::removeFolder(const QString &path)
{
    m_files.removeFolder(now(path));
}

QList<FolderEntry> GrowingFiles::entries(const QString &folder)
{
    return m_files.entries(now(folder));
}

int GrowingFiles::attributes(const QString &path)
{
    return m_files.attributes(now(path));
}

void GrowingFiles::setAttributes(const QString &path, int attributes)
{
    m_files.setAttributes(now(path), attributes);
}

void GrowingFiles::syncFolder(const QString &folder)
{
    m_files.syncFolder(now(folder));
}

void GrowingFiles::syncTree(const QString &folder)
{
    m_files.syncTree(now(folder));
}

std::unique_ptr<FileLock> GrowingFiles::lock(const QString &path, const QString &like,
                                             std::chrono::milliseconds patience)
{
    return m_files.lock(now(path), now(like), patience);
}

QString GrowingFiles::nativePath(const QString &path)
{
    return m_files.nativePath(now(path));
}

QString GrowingFiles::productPath(const QString &native)
{
    return m_files.productPath(native);
}
