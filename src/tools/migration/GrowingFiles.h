#pragma once

#include "platform/FileStreams.h"

/// The files of a fresh project that grows in another folder: those who write them may use the
/// paths that they will have. Nothing is flushed; whoever puts the folder in place does that.
class GrowingFiles final : public FileSystem
{
public:
    /// Both folders with a backslash at their end.
    GrowingFiles(FileSystem &files, QString place, QString growing);

    FileStatus status(const QString &path) override;
    QByteArray readFile(const QString &path, qint64 limit) override;
    void replaceFile(const QString &path, const QByteArray &content,
                     ReplaceOptions options) override;
    std::unique_ptr<FileReader> openFile(const QString &path) override;
    std::unique_ptr<FileWriter> startFile(const QString &path, ReplaceOptions options) override;
    void copyFile(const QString &from, const QString &to, NameCheck check) override;
    void makeFolder(const QString &path, NameCheck check) override;
    void move(const QString &from, const QString &to, NameCheck check) override;
    void removeFile(const QString &path, bool evenReadOnly) override;
    void removeFolder(const QString &path) override;
    QList<FolderEntry> entries(const QString &folder) override;
    int attributes(const QString &path) override;
    void setAttributes(const QString &path, int attributes) override;
    void syncFolder(const QString &folder) override;
    void syncTree(const QString &folder) override;
    std::unique_ptr<FileLock> lock(const QString &path, const QString &like,
                                   std::chrono::milliseconds patience) override;
    QString nativePath(const QString &path) override;
    QString productPath(const QString &native) override;

private:
    [[nodiscard]] QString now(const QString &path) const;

    FileSystem &m_files;
    const QString m_place, m_growing;
};
