#pragma once

#include "tools/build/BuildInput.h"
#include "tools/build/ProjectListing.h"

#include <QSet>
#include <QStringList>

#include <vector>

/// The name of a project's packed copy, which lies at the top of its folder.
QString packName(const QString &project);

/// Which files of a project go to the server: all but packed copies, logs, backups, locks,
/// temporary files, caches and, unless `withSources`, the files inside the project that pages were
/// made from and that are no pages themselves.
class PackChoice final
{
public:
    PackChoice(const BuildInput &input, bool withSources);
    /// `path`: relative to the project folder, with backslashes.
    [[nodiscard]] bool takes(const QString &path) const;

private:
    [[nodiscard]] bool isAuthors(const QString &path) const;

    const BuildInput &m_input;
    QSet<QString> m_originals; ///< folded; none when they are packed as well
    QStringList m_authors;     ///< folders of books and global pages, folded, with backslash
};

/// What of a project goes to the server, by `PackChoice`.
struct PackContents
{
    std::vector<ProjectListing::File> files; ///< in order of path
    QList<Finding> warnings = {};            ///< names that will give trouble elsewhere
    qint64 bytes = 0;                        ///< of all files together
};

PackContents packContents(const BuildInput &input, const ProjectListing &listing, bool withSources);
