#pragma once

#include "ProjectJobs.h"

/// The jobs on the quality checks.
QList<Job> checkJobs();
