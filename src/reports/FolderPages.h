#pragma once

#include "reports/LinkPlaces.h"
#include "tools/FolderNames.h"

#include <QHash>

/// The pages of one folder as link targets. Each is opened at most once, and only when it is asked
/// for.
class FolderPages final
{
public:
    /// `path` is the path of a real folder and ends in a backslash.
    FolderPages(FileSystem &files, const QString &path);

    /// Missing: no file has that name. Bad: it is empty, its first line is, or it cannot be opened.
    LinkPlaces::State state(QStringView name);

private:
    [[nodiscard]] LinkPlaces::State test(const QString &name, const FileStatus &status) const;
    [[nodiscard]] LinkPlaces::State unlisted(const QString &name) const;

    FileSystem &m_files;
    QString m_path;
    bool m_isListed = false;
    FolderNames m_names;
    QHash<QString, LinkPlaces::State> m_known; ///< by the name on disk
};
