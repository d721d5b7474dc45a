#pragma once

#include "platform/FileSystem.h"
#include "platform/windows/WindowsPaths.h"

/// The files of Windows: paths of any length, network names, no regard to case. What another
/// program keeps open for a moment is tried for two seconds. May be used from several threads.
class WindowsFiles final : public FileSystem
{
public:
    /// The drives are the machine's own unless a drives folder is named.
    explicit WindowsFiles(const QString &drivesFolder = {});

    [[nodiscard]] FileStatus status(const QString &path) override;
    [[nodiscard]] QByteArray readFile(const QString &path, qint64 limit = -1) override;
    void replaceFile(const QString &path, const QByteArray &content,
                     ReplaceOptions options = {}) override;
    [[nodiscard]] std::unique_ptr<FileReader> openFile(const QString &path) override;
    [[nodiscard]] std::unique_ptr<FileWriter> startFile(const QString &path,
                                                        ReplaceOptions options = {}) override;
    void copyFile(const QString &from, const QString &to,
                  NameCheck check = NameCheck::AnyCase) override;
    void makeFolder(const QString &path, NameCheck check = NameCheck::AnyCase) override;
    void move(const QString &from, const QString &to,
              NameCheck check = NameCheck::AnyCase) override;
    void removeFile(const QString &path, bool evenReadOnly = false) override;
    void removeFolder(const QString &path) override;
    [[nodiscard]] QList<FolderEntry> entries(const QString &folder) override;
    [[nodiscard]] int attributes(const QString &path) override;
    void setAttributes(const QString &path, int attributes) override;
    void syncFolder(const QString &folder) override;
    void syncTree(const QString &folder) override;
    [[nodiscard]] std::unique_ptr<FileLock> lock(const QString &path, const QString &like,
                                                 std::chrono::milliseconds patience) override;
    [[nodiscard]] QString nativePath(const QString &path) override;
    [[nodiscard]] QString productPath(const QString &native) override;

private:
    [[nodiscard]] int missingNumber(const QString &path);

    WindowsPaths m_paths;
};
