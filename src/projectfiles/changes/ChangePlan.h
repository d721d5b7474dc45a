#pragma once

#include "projectfiles/changes/FileChanges.h"

#include <QHash>

#include <memory>

// A change that is under way, in _Backup\: "Change-<n>.xml" lists its steps and what each file
// looked like before, "Change-<n>.data" holds what the files get. It is in force from the moment
// the list lies there until that is removed; whoever made it holds the lock on "Change.lock".

/// Waits for the right to change several files of a project. Null when another program had it all
/// the time.
std::unique_ptr<FileLock> lockChanges(FileSystem &files, const QString &projectFolder,
                                      std::chrono::milliseconds patience);
/// Full path of what is held.
QString changeLockPath(const QString &projectFolder);

/// One step as a plan notes it.
struct PlannedStep
{
    FileStep step; ///< `before` is not noted
    FileStamp old; ///< of a written or moved file, as it was before the change
    /// What an earlier step of the same change wrote there; then it is that and not `old`.
    std::optional<QByteArray> oldContent = {};
    /// Whether it is what the step finds that lies at `path` of the disk.
    [[nodiscard]] bool isOldAt(FileSystem &files, const QString &path) const;
};

class ChangePlan final
{
public:
    /// The plans that are in force, oldest first.
    static QList<ChangePlan> inForce(FileSystem &files, const QString &projectFolder);
    /// Whether one is in force, or was put aside because it could not be finished as a whole.
    static bool isAnyLeft(FileSystem &files, const QString &projectFolder);
    /// Removes the data of plans that never came into force.
    static void removeStrayData(FileSystem &files, const QString &projectFolder);
    /// Puts a plan in force. `old` gives the stamps of files before the change by folded path, as
    /// far as they are known; it looks for the others.
    static ChangePlan write(FileSystem &files, const QString &projectFolder,
                            const FileChanges &changes, const QHash<QString, FileStamp> &old);

    /// Reads its files, and says how they are damaged or lead out of the project; nothing of them
    /// may be done then. Raises an error when the disk does not give them now.
    [[nodiscard]] std::optional<QString> read();
    [[nodiscard]] const QString &name() const { return m_name; } ///< of the command
    [[nodiscard]] const QList<PlannedStep> &steps() const { return m_steps; }

    /// The change is done or taken back.
    void remove();
    /// Puts its files out of force, under the ending `ending`, and says where the list lies now.
    QString putAside(const QString &ending);

private:
    ChangePlan(FileSystem &files, QString projectFolder, int number);
    [[nodiscard]] QString path(const QString &ending) const;
    void parse(const QByteArray &list, const QByteArray &data);

    FileSystem *m_files;
    QString m_folder;
    int m_number;
    QString m_name;
    QList<PlannedStep> m_steps;
};
