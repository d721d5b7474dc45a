#pragma once

#include "platform/FileSystem.h"
#include "tools/FolderNames.h"

#include <QHash>
#include <QString>

#include <optional>

/// What lies below one folder, for many look-ups: each folder is listed once, when it is first
/// needed. Names count as on disk first, then without regard to case. Links are never followed,
/// and a folder that is not there holds nothing.
class FolderIndex final
{
public:
    /// `root` ends in a backslash.
    FolderIndex(FileSystem &files, QString root);

    struct Entry
    {
        QString relative; ///< as spelled on disk
        FileStatus status;
    };

    /// The entry at a relative path with backslashes; nothing when it is not there, lies behind a
    /// link, or its spelling fits two names.
    std::optional<Entry> find(const QString &relative);

    [[nodiscard]] const QString &root() const { return m_root; }

private:
    const FolderNames &names(const QString &relativeFolder);

    FileSystem &m_files;
    QString m_root;
    QHash<QString, FolderNames> m_folders;
};
