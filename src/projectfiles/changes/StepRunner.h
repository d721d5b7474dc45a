#pragma once

#include "projectfiles/changes/FileChanges.h"

/// Does single steps of a change. What a step does to names is flushed to the disk before the next
/// file is written, so that a power cut never leaves a later step without the ones before it.
class StepRunner final
{
public:
    enum class Backup { Keep, None };

    /// `projectFolder` ends in a backslash.
    StepRunner(FileSystem &files, QString projectFolder);

    /// With `Keep` the previous version of an XML file goes to _Backup\ first.
    void perform(const FileStep &step, Backup backup);
    /// Takes back what `perform` did; of a written file also when it raised an error.
    void takeBack(const FileStep &step);
    /// Flushes the names of moved, new and deleted files and folders. Call it after the last step.
    void flush();

    [[nodiscard]] std::optional<QByteArray> contentOf(const QString &path) const;

private:
    void write(const QString &path, const std::optional<QByteArray> &content);
    void move(const QString &from, const QString &to);
    void makeFolder(const QString &path);
    void removeFolder(const QString &path);
    void touched(const QString &path);

    FileSystem &m_files;
    QString m_folder;
    QStringList m_touched; ///< folders, relative, whose names have changed since the last flush
};
