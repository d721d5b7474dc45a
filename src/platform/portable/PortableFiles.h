#pragma once

#include "platform/FileSystem.h"
#include "platform/portable/Descriptor.h"
#include "platform/portable/NativePaths.h"

/// The files of a machine without drive letters: "C:\x\y" lies under "<drives folder>/c/x/y",
/// "\srv\qv\" is "/srv/qv/". May be used from several threads at once.
class PortableFiles final : public FileSystem
{
public:
    explicit PortableFiles(const QString &drivesFolder);

    [[nodiscard]] FileStatus status(const QString &path) override;
    [[nodiscard]] QByteArray readFile(const QString &path, qint64 limit = -1) override;
    void replaceFile(const QString &path, const QByteArray &content,
                     ReplaceOptions options = {}) override;
    [[nodiscard]] std::unique_ptr<FileReader> openFile(const QString &path) override;
    [[nodiscard]] std::unique_ptr<FileWriter> startFile(const QString &path,
                                                        ReplaceOptions options = {}) override;
    void copyFile(const QString &from, const QString &to,
                  NameCheck check = NameCheck::AnyCase) override;
    void copyFiles(const QString &fromFolder, const QString &toFolder, const QStringList &names,
                   const std::function<void(const QString &name)> &copied) override;
    void makeFolder(const QString &path, NameCheck check = NameCheck::AnyCase) override;
    void move(const QString &from, const QString &to,
              NameCheck check = NameCheck::AnyCase) override;
    void removeFile(const QString &path, bool evenReadOnly = false) override;
    void removeFolder(const QString &path) override;
    void removeFiles(const QString &folder, const QStringList &names,
                     const std::function<void(const QString &name)> &removed) override;
    [[nodiscard]] QList<FolderEntry> entries(const QString &folder) override;
    [[nodiscard]] QList<FolderEntry> kinds(const QString &folder) override;
    [[nodiscard]] int attributes(const QString &path) override;
    void setAttributes(const QString &path, int attributes) override;
    void syncFolder(const QString &folder) override;
    void syncTree(const QString &folder) override;
    [[nodiscard]] std::unique_ptr<FileLock> lock(const QString &path, const QString &like,
                                                 std::chrono::milliseconds patience) override;
    [[nodiscard]] QString nativePath(const QString &path) override;
    [[nodiscard]] QString productPath(const QString &native) override;

private:
    template <typename Call>
    int onPath(const QString &path, Call call) const;
    [[nodiscard]] QByteArray place(const QString &path, NameCheck check = NameCheck::AnyCase) const;
    [[nodiscard]] Descriptor openToRead(const QString &path, qint64 &size) const;
    [[nodiscard]] int missingNumber(const QString &path) const;
    [[nodiscard]] int openFolder(const QString &path) const;
    void syncFile(const QString &path) const;
    [[noreturn]] void raise(int error, QLatin1StringView what, const QString &path) const;

    NativePaths m_paths;
};
