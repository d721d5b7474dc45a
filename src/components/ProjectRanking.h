#pragma once

#include <QString>
#include <QStringList>

/// The product's project ranking component: the ranks in the catalogue.
class ProjectRanking
{
public:
    virtual ~ProjectRanking() = default;
    /// Sets the rank of one project. A name that is not catalogued is left alone; a
    /// catalogue that is missing raises 53.
    virtual void UpdateProjectRank(const QString &name, const QString &rank) = 0;
    /// The same for many with one load and one save; entries "<name>#<rank>", split at the last
    /// "#". One without "#" raises 5 when those before it are stored.
    virtual void UpdateProjectRanks(const QStringList &items) = 0;
};
