#pragma once

#include "ProjectJobs.h"

/// The jobs on the search words of a project.
QList<Job> wordJobs();
