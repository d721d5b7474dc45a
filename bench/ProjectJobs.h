#pragma once

#include <QList>
#include <QStringList>

struct Job
{
    QLatin1StringView name;
    qsizetype arguments; ///< at least
    bool windows;        ///< needs a display
    int (*run)(const QStringList &);
};

/// The jobs on whole projects and on the links between them.
QList<Job> projectJobs();
