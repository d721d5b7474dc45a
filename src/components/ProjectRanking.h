#pragma once

#include <QString>
#include <QStringList>

/// The product's project ranking component: the ranks in the catalogue.
class ProjectRanking
{
public:
    virtual ~ProjectRanking() = default;
    /// Sets the rank of one project. A name that is not catalogued is left alone.
    virtual void UpdateProjectRank(const QString &name, const QString &rank) = 0;
    /// The same for many with one load and one save; entries "<name>#<rank>", split at the last
    /// "#".
    virtual void UpdateProjectRanks(const QStringList &items) = 0;
};
