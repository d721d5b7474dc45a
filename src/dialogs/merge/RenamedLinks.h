#pragma once

#include "platform/FileSystem.h"
#include "platform/Progress.h"

#include <QHash>
#include <QString>
#include <QStringList>

/// Follows the renaming of a project's book folders in the links between its books.
class RenamedLinks final
{
public:
    /// `renamed` gives the new relative path of each renamed folder by its old one; both lie in
    /// the project `project`. Pages without a character set are read in `language`.
    RenamedLinks(FileSystem &files, const QString &project, const QHash<QString, QString> &renamed,
                 const QString &language);

    /// Rewrites pages and style sheets below `folder` (full, with backslash), which was
    /// `oldFolder` (relative) when their links were written. They keep their encoding, and their
    /// read-only bit: this is for fresh copies of ours. Nothing is flushed to the disk.
    void rewrite(const QString &folder, const QString &oldFolder, const Progress &progress = {});

    /// What was wrong with files that were left as they are, one sentence each.
    [[nodiscard]] const QStringList &remarks() const { return m_remarks; }

private:
    void rewriteFile(const QString &path, const QString &oldFolder);

    FileSystem &m_files;
    QString m_project;
    QString m_language;
    QHash<QString, QString> m_names; ///< by the folded old path, project first
    QStringList m_remarks;
};
