#pragma once

#include "ProjectJobs.h"

/// The jobs on whole builds.
QList<Job> buildJobs();
