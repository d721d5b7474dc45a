#pragma once

#include "projectfiles/changes/FileChanges.h"

#include <QHash>

/// The files of one project as a command leaves them, before anything is written: reads show what
/// was staged, writes are kept in memory. What lies outside the project is passed on for reading
/// and cannot be written. Writes below _Backup\ are left out: applying the change makes the
/// backups. What the disk would refuse is refused here: read-only files, missing folders, taken
/// names. May be used by one thread at a time.
class StagedFiles final : public FileSystem
{
public:
    /// `projectFolder` ends in a backslash.
    StagedFiles(FileSystem &files, QString projectFolder);

    /// All that was staged so far, as one change.
    [[nodiscard]] FileChanges changes() const;
    /// Read-only files may be written as well: whoever applies the change sees to it that they can
    /// be. Without it they are refused.
    void allowLocked() { m_allowsLocked = true; }

    /// Takes a file or folder out of the project, to a place from which undoing brings it back.
    /// `bin` is that place: a free path below the project folder, whose parent is there.
    void setAside(const QString &path, const QString &bin);

    FileStatus status(const QString &path) override;
    QByteArray readFile(const QString &path, qint64 limit = -1) override;
    void replaceFile(const QString &path, const QByteArray &content,
                     ReplaceOptions options = {}) override;
    void copyFile(const QString &from, const QString &to,
                  NameCheck check = NameCheck::AnyCase) override;
    void makeFolder(const QString &path, NameCheck check = NameCheck::AnyCase) override;
    void move(const QString &from, const QString &to,
              NameCheck check = NameCheck::AnyCase) override;
    void removeFile(const QString &path, bool evenReadOnly = false) override;
    void removeFolder(const QString &path) override;
    QList<FolderEntry> entries(const QString &folder) override;
    int attributes(const QString &path) override;
    void setAttributes(const QString &path, int attributes) override;
    void syncFolder(const QString &) override {}
    void syncTree(const QString &) override {}
    std::unique_ptr<FileLock> lock(const QString &path, const QString &like,
                                   std::chrono::milliseconds patience) override;
    QString nativePath(const QString &path) override;
    QString productPath(const QString &native) override;

private:
    struct Moved
    {
        QString from, to;
    };
    struct Seen
    {
        FileStamp stamp;
        QByteArray bytes;
    };

    [[nodiscard]] QString relative(const QString &path) const;
    [[nodiscard]] QString asItLies(const QString &path);
    [[nodiscard]] std::optional<QString> origin(const QString &path) const;
    [[nodiscard]] bool isBackup(const QString &path) const;
    void stage(const QString &path, std::optional<QByteArray> content);
    void stageFirst(const QString &path, std::optional<QByteArray> content);
    void noteMove(const QString &from, const QString &to);
    void requireFree(const QString &path);
    void requireFolder(const QString &path);
    [[noreturn]] static void raiseMissing(const QString &path);
    [[nodiscard]] bool isHidden(const QString &path) const;

    FileSystem &m_files;
    QString m_folder;
    FileChanges m_changes;
    bool m_allowsLocked = false;
    QList<Moved> m_moves;
    QHash<QString, qsizetype> m_written; ///< place of the step that wrote a path last
    QHash<QString, Seen> m_seen;
    QHash<QString, bool> m_folders;  ///< made (true) or removed (false)
    QHash<QString, QString> m_names; ///< how what was staged or moved here is spelled
};
