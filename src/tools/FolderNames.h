#pragma once

#include "platform/FileSystem.h"

#include <QList>
#include <QString>
#include <QStringView>

#include <vector>

/// What lies directly in one folder, to be found by name: as on disk first, then without regard to
/// case.
class FolderNames final
{
public:
    FolderNames() = default;
    /// `entries` as `FileSystem::entries` gives them, in the order of names.
    explicit FolderNames(QList<FolderEntry> entries);

    /// Null when it is not there, or its spelling fits two names.
    [[nodiscard]] const FolderEntry *find(QStringView name) const;

private:
    struct Folded
    {
        QString name; ///< without case
        qsizetype entry;
    };
    QList<FolderEntry> m_entries;
    std::vector<Folded> m_folded; ///< in the order of names
};
