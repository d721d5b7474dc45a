#pragma once

#include "platform/FileSystem.h"
#include "platform/Progress.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>

#include <optional>

/// What a file looked like at one moment; two that differ mean that somebody wrote it between.
struct FileStamp
{
    FileKind kind = FileKind::Missing;
    qint64 size = 0;
    QDateTime modified;
    friend bool operator==(const FileStamp &, const FileStamp &) = default;
};
FileStamp stampOf(FileSystem &files, const QString &path);

/// Where `path` lies after `from` was moved to `to`; nothing when that is no concern of it.
std::optional<QString> carriedOver(const QString &path, const QString &from, const QString &to);

/// The keys of what lay at `from` lead to `to` afterwards; what was noted there before is past.
template <typename Value>
QHash<QString, Value> carriedKeys(const QHash<QString, Value> &noted, const QString &from,
                                  const QString &to)
{
    QHash<QString, Value> carried;
    for (auto at = noted.cbegin(); at != noted.cend(); ++at) {
        if (const auto moved = carriedOver(at.key(), from, to))
            carried.insert(*moved, at.value());
        else if (!carriedOver(at.key(), to, to))
            carried.insert(at.key(), at.value());
    }
    return carried;
}

/// One step of a change. Paths are relative to the project folder, without a backslash at the end.
struct FileStep
{
    enum class Kind {
        Write,        ///< the file gets `after`, or goes when that is nothing
        Move,         ///< a file or folder goes from `path` to `to`
        MakeFolder,   ///< its parent is there
        RemoveFolder, ///< when it is empty; else it stays
    } kind = Kind::Write;
    QString path;
    QString to = {};
    std::optional<QByteArray> before = {}, after = {}; ///< nothing: there is no file
};

/// A file that a change begins from: it must look like this, or hold these bytes.
struct ExpectedFile
{
    QString path; ///< relative to the project folder
    FileStamp stamp;
    std::optional<QByteArray> bytes; ///< nothing: there is no file
};

/// What one command of an author does to the files of a project: all of it happens, or nothing.
struct FileChanges
{
    QList<FileStep> steps;
    QList<ExpectedFile> expected;
    QString name = {}; ///< of the command, for messages

    [[nodiscard]] bool isEmpty() const { return steps.isEmpty(); }
    /// Every path that a step names.
    [[nodiscard]] QStringList paths() const;
    /// Bytes held in memory to take it back.
    [[nodiscard]] qint64 size() const;
    /// What takes it back, once it was applied.
    [[nodiscard]] FileChanges reversed() const;
};

/// The first file (relative) that no longer is what the change begins from; nothing when all are.
std::optional<QString> changedSince(FileSystem &files, const QString &projectFolder,
                                    const FileChanges &changes);

/// Does all steps in order. Refuses with 75, naming the file and having changed nothing, when a
/// file no longer is what the change began from, and with 70 when another program is changing the
/// project all the time. A plan in _Backup\ goes before the first of several steps, so that the
/// next open finishes what a dying program began; a failure takes back what was done, and so does
/// Stop. The previous version of each XML file goes to _Backup\. `projectFolder` ends in a
/// backslash. Afterwards `changes.expected` is what the files look like then, from which the
/// reverse begins.
void applyChanges(FileSystem &files, const QString &projectFolder, FileChanges &changes,
                  const Progress &progress = {});
